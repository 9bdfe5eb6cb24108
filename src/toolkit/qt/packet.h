#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace gantry::platform {

/// The other end of a link has gone, or says what makes no sense.
class LinkFailure : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// Values one after another, as they go over a link between two processes of one build. Taking
/// what isn't there throws LinkFailure.
///
/// A record is passed field by field when `FieldsOf` ties its fields, else as its bytes are. A C
/// text that was taken lies in the packet that it came in.
class Packet {
 public:
  Packet() = default;
  explicit Packet(std::string bytes) : bytes_(std::move(bytes)) {}

  const std::string& Bytes() const { return bytes_; }

  template <class Value>
  Packet& Put(const Value& value) {
    if constexpr (requires { FieldsOf(value); }) {
      std::apply([this](const auto&... fields) { (this->Put(fields), ...); }, FieldsOf(value));
    } else if constexpr (std::is_same_v<Value, const char*>) {
      Put(value != nullptr);
      if (value != nullptr) bytes_.append(value, std::strlen(value) + 1);
    } else if constexpr (requires { value.has_value(); }) {
      Put(value.has_value());
      if (value.has_value()) Put(*value);
    } else if constexpr (requires { value.c_str(); }) {
      Put(value.size());
      bytes_ += value;
    } else if constexpr (requires { value.begin(); }) {
      Put(value.size());
      for (const auto& item : value) Put(item);
    } else {
      static_assert(std::is_trivially_copyable_v<Value>);
      bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return *this;
  }

  template <class Value>
  Value Take() {
    Value value{};
    TakeInto(value);
    return value;
  }

 private:
  template <class Value>
  void TakeInto(Value& value) {
    if constexpr (requires { FieldsOf(value); }) {
      std::apply([this](auto&... fields) { (this->TakeInto(fields), ...); }, FieldsOf(value));
    } else if constexpr (std::is_same_v<Value, bool>) {
      value = Take<uint8_t>() != 0;
    } else if constexpr (std::is_same_v<Value, const char*>) {
      value = Take<bool>() ? Next(std::strlen(bytes_.c_str() + at_) + 1) : nullptr;
    } else if constexpr (requires { value.has_value(); }) {
      if (Take<bool>()) TakeInto(value.emplace());
    } else if constexpr (requires { value.c_str(); }) {
      const auto size = Take<size_t>();
      value.assign(Next(size), size);
    } else if constexpr (requires { value.begin(); }) {
      for (auto count = Take<size_t>(); count > 0; --count) TakeInto(value.emplace_back());
    } else {
      static_assert(std::is_trivially_copyable_v<Value>);
      std::memcpy(&value, Next(sizeof value), sizeof value);
    }
  }

  const char* Next(size_t size) {
    if (size > bytes_.size() - at_) throw LinkFailure("A message of the link is too short");
    return bytes_.data() + std::exchange(at_, at_ + size);
  }

  std::string bytes_;
  size_t at_ = 0;  ///< what comes before it has been taken
};

}  // namespace gantry::platform
