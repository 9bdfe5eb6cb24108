#include "client/message_stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <stdexcept>

#include "client/wire_format.h"

namespace gantry {

namespace {

std::string_view TagOf(HeaderType type) {
  for (const wire::Tag& tag : wire::kTags) {
    if (tag.type == type) return tag.text;
  }
  return {};
}

std::optional<HeaderType> TypeOf(std::string_view text) {
  for (const wire::Tag& tag : wire::kTags) {
    if (tag.text == text) return tag.type;
  }
  return std::nullopt;
}

std::string Describe(std::string_view name, uint64_t count) {
  return std::string(name) + "-" + std::to_string(count) + "-";
}

[[noreturn]] void FailHeader(const std::string& received, const std::string& expected) {
  throw std::length_error("Incorrect header (received: " + received + " vs expected: " + expected +
                          ")");
}

void CheckType(const Header& header, HeaderType type) {
  if (header.type == type) return;
  throw std::invalid_argument("Incorrect header (received: " + std::string(TagOf(header.type)) +
                              " vs expected: " + std::string(TagOf(type)) + " )");
}

std::span<const std::byte> BytesOf(const void* data, size_t size) {
  return {static_cast<const std::byte*>(data), size};
}

/// Writes `size` bytes and moves the target behind them.
void Put(std::byte*& target, const void* data, size_t size) {
  if (size == 0) return;
  std::memcpy(target, data, size);
  target += size;
}

}  // namespace

OutgoingMessage MessageStream::CreateOutgoingMessage() {
  if (!buffer_.empty()) {
    throw std::logic_error(
        "Cannot create a new out-going message as the previous message is still on going.");
  }
  return OutgoingMessage(*this);
}

IncomingMessage MessageStream::ReceiveMessage() {
  if (!buffer_.empty()) {
    throw std::logic_error("Cannot receive a message as the previous message is still on going.");
  }
  ReceiveFrame();
  return IncomingMessage(*this);
}

void MessageStream::SendFrame() {
  const uint64_t total = buffer_.size();
  const std::array<uint64_t, 2> frame = {total, std::min(total, wire::kChunkSize)};
  channel_.Write(BytesOf(frame.data(), sizeof frame));
  for (uint64_t offset = 0; offset < total; offset += wire::kChunkSize) {
    const uint64_t length = std::min(total, offset + wire::kChunkSize) - offset;
    if (offset != 0) channel_.Write(BytesOf(&length, sizeof length));
    channel_.Write(BytesOf(buffer_.data() + offset, length));
  }
  buffer_.clear();
}

void MessageStream::ReceiveFrame() {
  std::array<uint64_t, 2> frame{};
  channel_.Read(std::as_writable_bytes(std::span(frame)));
  const uint64_t total = frame[0];
  if (total == 0) return;
  // A plain frame sizes the buffer once. A claim beyond what is sensible has to be borne out by
  // bytes that arrive before storage is found for it.
  buffer_.resize(std::min(total, wire::kLargestUnprovenFrame));
  uint64_t received = 0;
  for (uint64_t length = frame[1];;) {
    if (length > total - received) {
      throw std::length_error("Incorrect length in header (received: " + std::to_string(length) +
                              " vs allowed:" + std::to_string(total - received) + ")");
    }
    ReceiveChunk(received, length);
    received += length;
    if (received == total) return;
    channel_.Read(std::as_writable_bytes(std::span(&length, 1)));
    if (length == 0) throw std::length_error("Incorrect zero chunk length received.");
  }
}

void MessageStream::ReceiveChunk(uint64_t received, uint64_t length) {
  while (length > 0) {
    if (received == buffer_.size()) {
      buffer_.resize(buffer_.size() + std::min(length, wire::kLargestUnprovenFrame));
    }
    const uint64_t part = std::min(length, buffer_.size() - received);
    channel_.Read(std::span(buffer_).subspan(received, part));
    received += part;
    length -= part;
  }
}

std::byte* OutgoingMessage::AppendHeader(std::string_view name, uint64_t count, HeaderType type,
                                         size_t arraySize) {
  if (name.size() > wire::kLongestName) {
    throw std::logic_error("Size of header name (" + std::to_string(name.size()) +
                           ") exceeds the allowed limit (" + std::to_string(wire::kLongestName) +
                           ").");
  }
  std::vector<std::byte>& buffer = stream_->buffer_;
  const size_t begin = buffer.size();
  buffer.resize(begin + wire::kHeaderSizeWithoutName + name.size() + arraySize);
  std::byte* target = buffer.data() + begin;
  const auto nameLength = static_cast<uint8_t>(name.size());
  Put(target, &nameLength, sizeof nameLength);
  Put(target, name.data(), name.size());
  Put(target, &count, sizeof count);
  Put(target, TagOf(type).data(), wire::kTagSize);
  return target;
}

OutgoingMessage& OutgoingMessage::AppendMarker(std::string_view name, uint64_t count) {
  AppendHeader(name, count, HeaderType::MESS, 0);
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendInts(std::string_view name,
                                             std::span<const int32_t> values) {
  std::byte* target = AppendHeader(name, values.size(), HeaderType::INTE, values.size_bytes());
  Put(target, values.data(), values.size_bytes());
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendDoubles(std::string_view name,
                                                std::span<const double> values) {
  std::byte* target = AppendHeader(name, values.size(), HeaderType::DOUB, values.size_bytes());
  Put(target, values.data(), values.size_bytes());
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendStrings(std::string_view name,
                                                std::span<const std::string> values) {
  size_t arraySize = 0;
  for (const std::string& value : values) arraySize += sizeof(uint64_t) + value.size();
  std::byte* target = AppendHeader(name, values.size(), HeaderType::CSTR, arraySize);
  for (const std::string& value : values) {
    const uint64_t length = value.size();
    Put(target, &length, sizeof length);
    Put(target, value.data(), value.size());
  }
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendString(std::string_view name, std::string_view value) {
  const uint64_t length = value.size();
  std::byte* target = AppendHeader(name, 1, HeaderType::CSTR, sizeof length + value.size());
  Put(target, &length, sizeof length);
  Put(target, value.data(), value.size());
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendInt(std::string_view name, int32_t value) {
  return AppendInts(name, std::span(&value, 1));
}

OutgoingMessage& OutgoingMessage::AppendDouble(std::string_view name, double value) {
  return AppendDoubles(name, std::span(&value, 1));
}

void OutgoingMessage::Send() { stream_->SendFrame(); }

Header IncomingMessage::ReadHeader() {
  uint8_t nameLength = 0;
  Take(&nameLength, sizeof nameLength);
  Require(nameLength + wire::kHeaderSizeWithoutName - 1);
  const auto* text = reinterpret_cast<const char*>(stream_->buffer_.data());
  Header header;
  header.name = std::string_view(text + position_, nameLength);
  position_ += nameLength;
  Take(&header.count, sizeof header.count);
  const std::string_view tag(text + position_, wire::kTagSize);
  const std::optional<HeaderType> type = TypeOf(tag);
  if (!type) throw std::invalid_argument("Unknown type: " + std::string(tag));
  position_ += wire::kTagSize;
  header.type = *type;
  return header;
}

void IncomingMessage::CheckHeader(const Header& header, std::string_view name, uint64_t count,
                                  HeaderType type) {
  if (header == Header{name, count, type}) return;
  FailHeader(Describe(header.name, header.count) + std::string(TagOf(header.type)),
             Describe(name, count) + std::string(TagOf(type)));
}

void IncomingMessage::CheckMarker(const Header& header, uint64_t count) {
  CheckHeader(header, header.name, count, HeaderType::MESS);
}

void IncomingMessage::CheckNameAndCount(const Header& header, std::string_view name,
                                        uint64_t count) {
  if (header.name == name && header.count == count) return;
  FailHeader(Describe(header.name, header.count) + std::string(TagOf(header.type)),
             Describe(name, count) + "...");
}

std::vector<int32_t> IncomingMessage::ReadInts(const Header& header) {
  CheckType(header, HeaderType::INTE);
  return TakeArray<int32_t>(header.count);
}

std::vector<double> IncomingMessage::ReadDoubles(const Header& header) {
  CheckType(header, HeaderType::DOUB);
  return TakeArray<double>(header.count);
}

std::vector<std::string> IncomingMessage::ReadStrings(const Header& header) {
  std::vector<std::string> values;
  AppendStrings(header, values);
  return values;
}

void IncomingMessage::AppendStrings(const Header& header, std::vector<std::string>& values) {
  CheckType(header, HeaderType::CSTR);
  // Each element takes its length word at least, so a count beyond that can't be borne out.
  RequireElements(header.count, sizeof(uint64_t));
  // Asking for the exact size time and again would defeat the vector's own growth.
  if (values.empty()) values.reserve(header.count);
  for (uint64_t i = 0; i < header.count; ++i) {
    uint64_t length = 0;
    Take(&length, sizeof length);
    Require(length);
    values.emplace_back(reinterpret_cast<const char*>(stream_->buffer_.data() + position_), length);
    position_ += length;
  }
}

void IncomingMessage::AppendDoubles(const Header& header, std::vector<double>& values) {
  CheckType(header, HeaderType::DOUB);
  RequireElements(header.count, sizeof(double));
  const size_t begin = values.size();
  values.resize(begin + header.count);
  Take(values.data() + begin, header.count * sizeof(double));
}

std::vector<int32_t> IncomingMessage::ReadInts(std::string_view name) {
  return TakeArray<int32_t>(ReadHeaderOf(name, HeaderType::INTE).count);
}

std::vector<double> IncomingMessage::ReadDoubles(std::string_view name) {
  return TakeArray<double>(ReadHeaderOf(name, HeaderType::DOUB).count);
}

std::vector<std::string> IncomingMessage::ReadStrings(std::string_view name) {
  return ReadStrings(ReadHeaderOf(name, HeaderType::CSTR));
}

std::vector<int32_t> IncomingMessage::ReadInts(std::string_view name, uint64_t count) {
  return TakeArray<int32_t>(ReadHeaderOf(name, count, HeaderType::INTE).count);
}

std::vector<double> IncomingMessage::ReadDoubles(std::string_view name, uint64_t count) {
  return TakeArray<double>(ReadHeaderOf(name, count, HeaderType::DOUB).count);
}

std::vector<std::string> IncomingMessage::ReadStrings(std::string_view name, uint64_t count) {
  return ReadStrings(ReadHeaderOf(name, count, HeaderType::CSTR));
}

void IncomingMessage::ExpectMarker(std::string_view name) {
  CheckHeader(ReadHeader(), name, 0, HeaderType::MESS);
}

void IncomingMessage::EndOfMessage() {
  const size_t size = stream_->buffer_.size();
  if (position_ != size) {
    throw std::length_error(
        "Received message is longer than expected (received: " + std::to_string(size) +
        " vs expected: " + std::to_string(position_) + ")");
  }
  stream_->buffer_.clear();
}

void IncomingMessage::Require(uint64_t length) const {
  if (length > stream_->buffer_.size() - position_) {
    throw std::length_error("Not enough data read from network");
  }
}

void IncomingMessage::RequireElements(uint64_t count, uint64_t leastSize) const {
  if (count > (stream_->buffer_.size() - position_) / leastSize) {
    throw std::length_error("Not enough data read from network");
  }
}

void IncomingMessage::Take(void* target, uint64_t length) {
  Require(length);
  if (length != 0) std::memcpy(target, stream_->buffer_.data() + position_, length);
  position_ += length;
}

template <class T>
std::vector<T> IncomingMessage::TakeArray(uint64_t count) {
  RequireElements(count, sizeof(T));
  std::vector<T> values(count);
  Take(values.data(), count * sizeof(T));
  return values;
}

Header IncomingMessage::ReadHeaderOf(std::string_view name, HeaderType type) {
  const Header header = ReadHeader();
  CheckHeader(header, name, header.count, type);
  return header;
}

Header IncomingMessage::ReadHeaderOf(std::string_view name, uint64_t count, HeaderType type) {
  const Header header = ReadHeader();
  CheckHeader(header, name, count, type);
  return header;
}

}  // namespace gantry
