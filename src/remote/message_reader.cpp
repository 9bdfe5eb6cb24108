#include "remote/message_reader.h"

#include <algorithm>
#include <cstring>

namespace gantry {

namespace {

template <class T>
std::span<std::byte> BytesOf(T& value) {
  return std::as_writable_bytes(std::span(&value, 1));
}

}  // namespace

std::span<const std::byte> MessageReader::Take(size_t size) {
  Require(size, 1);
  const std::span<const std::byte> taken = bytes_.subspan(position_, size);
  position_ += size;
  return taken;
}

void MessageReader::GetBytes(std::span<std::byte> target) {
  const std::span<const std::byte> taken = Take(target.size());
  std::copy(taken.begin(), taken.end(), target.begin());
}

int32_t MessageReader::GetInt() {
  int32_t value = 0;
  GetBytes(BytesOf(value));
  return value;
}

double MessageReader::GetDouble() {
  double value = 0;
  GetBytes(BytesOf(value));
  return value;
}

uint8_t MessageReader::GetByte() {
  uint8_t value = 0;
  GetBytes(BytesOf(value));
  return value;
}

std::string MessageReader::GetText() {
  const std::span<const std::byte> taken = Take(GetCount(1));
  const auto* text = reinterpret_cast<const char*>(taken.data());
  return {text, ::strnlen(text, taken.size())};
}

void MessageReader::GetIntArray(std::span<int32_t> target) {
  GetBytes(std::as_writable_bytes(target));
}

void MessageReader::GetDoubleArray(std::span<double> target) {
  GetBytes(std::as_writable_bytes(target));
}

size_t MessageReader::GetCount(size_t leastSize) {
  const int32_t count = GetInt();
  if (count < 0) throw MessageOverrun();
  Require(static_cast<size_t>(count), leastSize);
  return static_cast<size_t>(count);
}

void MessageReader::Require(size_t count, size_t leastSize) const {
  if (count > Remaining() / leastSize) throw MessageOverrun();
}

}  // namespace gantry
