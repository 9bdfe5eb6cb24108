#include "client/message_stream.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "client/gathered_frames.h"
#include "client/wire_format.h"

namespace gantry {

namespace {

std::string_view TagOf(HeaderType type) { return wire::kTags[static_cast<size_t>(type)]; }

HeaderType TypeOf(std::string_view tag) {
  const auto* const found = std::ranges::find(wire::kTags, tag);
  if (found == wire::kTags.end()) throw std::invalid_argument("Unknown type: " + std::string(tag));
  return static_cast<HeaderType>(found - wire::kTags.begin());
}

std::string Describe(std::string_view name, uint64_t count, std::string_view type) {
  return std::string(name) + "-" + std::to_string(count) + "-" + std::string(type);
}

[[noreturn]] void FailIncorrect(const Header& received, const std::string& expected) {
  throw std::length_error("Incorrect header (received: " +
                          Describe(received.name, received.count, TagOf(received.type)) +
                          " vs expected: " + expected + ")");
}

void CheckType(const Header& header, HeaderType type) {
  if (header.type == type) return;
  throw std::invalid_argument("Incorrect header (received: " + std::string(TagOf(header.type)) +
                              " vs expected: " + std::string(TagOf(type)) + " )");
}

/// Writes `size` bytes and moves the target behind them.
void Put(std::byte*& target, const void* data, size_t size) {
  if (size == 0) return;
  std::memcpy(target, data, size);
  target += size;
}

size_t SizeOfHeader(std::string_view name) { return wire::kHeaderSizeWithoutName + name.size(); }

size_t SizeOfStrings(std::span<const std::string> values) {
  size_t size = 0;
  for (const std::string& value : values) size += sizeof(uint64_t) + value.size();
  return size;
}

void CheckName(std::string_view name) {
  if (name.size() <= wire::kLongestName) return;
  throw std::logic_error("Size of header name (" + std::to_string(name.size()) +
                         ") exceeds the allowed limit (" + std::to_string(wire::kLongestName) +
                         ").");
}

void PutHeader(std::byte*& target, std::string_view name, uint64_t count, HeaderType type) {
  const auto nameLength = static_cast<uint8_t>(name.size());
  Put(target, &nameLength, sizeof nameLength);
  Put(target, name.data(), name.size());
  Put(target, &count, sizeof count);
  Put(target, TagOf(type).data(), wire::kTagSize);
}

void PutString(std::byte*& target, std::string_view value) {
  const uint64_t length = value.size();
  Put(target, &length, sizeof length);
  Put(target, value.data(), value.size());
}

}  // namespace

void wire::EncodeHeader(const Header& header, std::span<std::byte> target) {
  std::byte* next = target.data();
  PutHeader(next, header.name, header.count, header.type);
}

OutgoingMessage MessageStream::CreateOutgoingMessage() {
  if (size_ != 0) {
    throw std::logic_error(
        "Cannot create a new out-going message as the previous message is still on going.");
  }
  return OutgoingMessage(*this);
}

IncomingMessage MessageStream::ReceiveMessage() {
  if (size_ != 0) {
    throw std::logic_error("Cannot receive a message as the previous message is still on going.");
  }
  ReceiveFrame();
  return IncomingMessage(*this);
}

std::byte* MessageStream::Grow(size_t length) {
  const size_t begin = size_;
  size_ += length;
  if (size_ > storage_.size()) storage_.resize(size_);  // finds room for more, and leaves it alone
  return storage_.data() + begin;
}

void MessageStream::Send(const EncodedMessage& message) {
  CreateOutgoingMessage();        // the stream must be free for one
  size_ = message.bytes_.size();  // and isn't until it has been sent
  SendFrames({message.bytes_});
}

void MessageStream::SendFrames(std::initializer_list<std::span<const std::byte>> payloads) {
  GatheredFrames frames;
  for (const std::span<const std::byte> payload : payloads) frames.Add(payload);
  channel_.WriteParts(frames.Parts());
  size_ = 0;
}

void MessageStream::ReceiveFrame() {
  std::array<uint64_t, 2> frame{};
  channel_.Read(std::as_writable_bytes(std::span(frame)));
  const uint64_t total = frame[0];
  if (total == 0) return;
  // Storage that is there already is used at once. More is found for a claim of sensible size, and
  // beyond that only as bytes bear the claim out.
  const uint64_t ready = std::max<uint64_t>(storage_.size(), wire::kLargestUnprovenFrame);
  Grow(std::min(total, ready));
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
    if (received == size_) Grow(std::min(length, wire::kLargestUnprovenFrame));
    const uint64_t part = std::min(length, size_ - received);
    channel_.Read(std::span(storage_).subspan(received, part));
    received += part;
    length -= part;
  }
}

std::byte* OutgoingMessage::AppendHeader(std::string_view name, uint64_t count, HeaderType type,
                                         size_t arraySize) {
  CheckName(name);
  std::byte* target = stream_->Grow(SizeOfHeader(name) + arraySize);
  PutHeader(target, name, count, type);
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
  std::byte* target = AppendHeader(name, values.size(), HeaderType::CSTR, SizeOfStrings(values));
  for (const std::string& value : values) PutString(target, value);
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendString(std::string_view name, std::string_view value) {
  std::byte* target = AppendHeader(name, 1, HeaderType::CSTR, sizeof(uint64_t) + value.size());
  PutString(target, value);
  return *this;
}

OutgoingMessage& OutgoingMessage::AppendInt(std::string_view name, int32_t value) {
  return AppendInts(name, std::span(&value, 1));
}

OutgoingMessage& OutgoingMessage::AppendDouble(std::string_view name, double value) {
  return AppendDoubles(name, std::span(&value, 1));
}

OutgoingMessage& OutgoingMessage::AppendRepeated(std::string_view name, uint64_t count,
                                                 std::string_view value) {
  std::byte* target =
      AppendHeader(name, count, HeaderType::CSTR, count * (sizeof(uint64_t) + value.size()));
  for (uint64_t i = 0; i < count; ++i) PutString(target, value);
  return *this;
}

void OutgoingMessage::Send() { stream_->SendFrames({stream_->Composed()}); }

void OutgoingMessage::SendAheadOf(const EncodedMessage& next) {
  stream_->SendFrames({stream_->Composed(), next.bytes_});
}

void OutgoingMessage::KeepAs(EncodedMessage& message) {
  const auto begin = stream_->storage_.begin();
  message.bytes_.assign(begin, begin + static_cast<ptrdiff_t>(Size()));
  stream_->size_ = 0;
}

inline void IncomingMessage::RequireElements(uint64_t count, uint64_t leastSize) const {
  if (count > (stream_->size_ - position_) / leastSize) FailShort();
}

Header IncomingMessage::ReadHeader() {
  const auto nameLength = TakeScalar<uint8_t>();
  const char* bytes =
      TakeView(nameLength + wire::kHeaderSizeWithoutName - sizeof nameLength).data();
  Header header;
  header.name = {bytes, nameLength};
  bytes += nameLength;
  std::memcpy(&header.count, bytes, sizeof header.count);
  header.type = TypeOf({bytes + sizeof header.count, wire::kTagSize});
  return header;
}

void IncomingMessage::FailShort() { throw std::length_error("Not enough data read from network"); }

void IncomingMessage::FailHeader(const Header& received, const Header& expected) {
  FailIncorrect(received, Describe(expected.name, expected.count, TagOf(expected.type)));
}

void IncomingMessage::FailNameAndCount(const Header& received, std::string_view name,
                                       uint64_t count) {
  FailIncorrect(received, Describe(name, count, "..."));
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
  for (uint64_t i = 0; i < header.count; ++i) values.emplace_back(TakeText());
}

std::string_view IncomingMessage::ReadText(const Header& header) {
  CheckType(header, HeaderType::CSTR);
  return TakeText();
}

void IncomingMessage::ReadElements(std::span<std::string> values) {
  for (std::string& value : values) value.assign(TakeText());
}

std::vector<int32_t> IncomingMessage::ReadInts(std::string_view name, OptionalCount count) {
  return ReadInts(ReadHeaderOf(name, count, HeaderType::INTE));
}

std::vector<double> IncomingMessage::ReadDoubles(std::string_view name, OptionalCount count) {
  return ReadDoubles(ReadHeaderOf(name, count, HeaderType::DOUB));
}

std::vector<std::string> IncomingMessage::ReadStrings(std::string_view name, OptionalCount count) {
  return ReadStrings(ReadHeaderOf(name, count, HeaderType::CSTR));
}

void IncomingMessage::ExpectMarker(std::string_view name) {
  CheckHeader(ReadHeader(), name, 0, HeaderType::MESS);
}

void IncomingMessage::EndOfMessage() {
  const size_t size = stream_->size_;
  if (position_ != size) {
    throw std::length_error(
        "Received message is longer than expected (received: " + std::to_string(size) +
        " vs expected: " + std::to_string(position_) + ")");
  }
  stream_->size_ = 0;
}

template <class T>
std::vector<T> IncomingMessage::TakeArray(uint64_t count) {
  RequireElements(count, sizeof(T));
  std::vector<T> values(count);
  TakeElements(count, values.data());
  return values;
}

Header IncomingMessage::ReadHeaderOf(std::string_view name, OptionalCount count, HeaderType type) {
  const Header header = ReadHeader();
  CheckHeader(header, name, count.value_or(header.count), type);
  return header;
}

}  // namespace gantry
