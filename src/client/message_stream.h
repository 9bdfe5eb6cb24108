#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/byte_channel.h"

namespace gantry {

/// The kinds of array data, by their values in memory.
enum class HeaderType : int32_t { MESS = 0, DOUB = 1, INTE = 2, CSTR = 3 };

/// One decoded entry header. The name is a view into the message that is being read.
struct Header {
  std::string_view name;
  uint64_t count = 0;
  HeaderType type = HeaderType::MESS;

  bool operator==(const Header&) const = default;
};

class EncodedMessage;
class OutgoingMessage;
class IncomingMessage;

/// The codec of the external-controller protocol: framed messages of named, typed arrays over one
/// channel. docs/wire-protocol.md shows the format with an example.
///
/// One growable buffer serves both directions and keeps its storage from message to message. An
/// empty buffer means that no message is going on; after a failure the bytes stay, and every later
/// message fails with `logic_error`, so that a broken session can't be mistaken for a whole one.
/// One thread at a time.
///
/// Throws `logic_error` for misuse, `length_error` for frames and entries that break the format,
/// `invalid_argument` for wrong tags, and what the channel throws.
class MessageStream {
 public:
  explicit MessageStream(ByteChannel& channel) : channel_(channel) {}
  MessageStream(const MessageStream&) = delete;
  MessageStream& operator=(const MessageStream&) = delete;

  OutgoingMessage CreateOutgoingMessage();
  void Send(const EncodedMessage& message);
  /// Blocks until a whole frame has arrived.
  IncomingMessage ReceiveMessage();

 private:
  friend class OutgoingMessage;
  friend class IncomingMessage;

  void SendFrames(std::initializer_list<std::span<const std::byte>> payloads);
  std::span<const std::byte> Composed() const { return std::span(storage_).first(size_); }
  void ReceiveFrame();
  void ReceiveChunk(uint64_t received, uint64_t length);

  /// Makes the message longer and returns where the new bytes begin; they hold anything.
  std::byte* Grow(size_t length);

  ByteChannel& channel_;
  std::vector<std::byte> storage_;  ///< never given back while the stream lives
  size_t size_ = 0;                 ///< of the message that is going on; 0 when there is none
};

/// A whole message, encoded once to be sent many times. The numbers in it may be changed in
/// between.
class EncodedMessage {
 public:
  /// Writes over the value at `place`, which must be that of an element of an array of doubles.
  void SetDouble(size_t place, double value) {
    std::memcpy(bytes_.data() + place, &value, sizeof value);
  }

 private:
  friend class MessageStream;
  friend class OutgoingMessage;
  std::vector<std::byte> bytes_;
};

/// A message being composed in its stream's buffer; owns nothing. Appends chain.
class OutgoingMessage {
 public:
  explicit OutgoingMessage(MessageStream& stream) : stream_(&stream) {}

  OutgoingMessage& AppendMarker(std::string_view name, uint64_t count = 0);
  OutgoingMessage& AppendInts(std::string_view name, std::span<const int32_t> values);
  OutgoingMessage& AppendDoubles(std::string_view name, std::span<const double> values);
  OutgoingMessage& AppendStrings(std::string_view name, std::span<const std::string> values);
  OutgoingMessage& AppendString(std::string_view name, std::string_view value);
  OutgoingMessage& AppendInt(std::string_view name, int32_t value);
  OutgoingMessage& AppendDouble(std::string_view name, double value);
  /// The same string time and again.
  OutgoingMessage& AppendRepeated(std::string_view name, uint64_t count, std::string_view value);

  /// Where the next entry will begin.
  size_t Size() const { return stream_->size_; }
  /// Sends the buffer as one frame and empties it.
  void Send();
  /// The same, with `next` as a frame of its own right behind it.
  void SendAheadOf(const EncodedMessage& next);
  /// Empties the buffer into `message`, whose storage is used again. Nothing is sent.
  void KeepAs(EncodedMessage& message);

 private:
  std::byte* AppendHeader(std::string_view name, uint64_t count, HeaderType type, size_t arraySize);

  MessageStream* stream_;
};

/// A received message being read from its stream's buffer, entry by entry.
class IncomingMessage {
 public:
  using OptionalCount = std::optional<uint64_t>;

  explicit IncomingMessage(MessageStream& stream) : stream_(&stream) {}

  Header ReadHeader();
  /// Steps over bytes that have been looked at.
  void StepOver(size_t size) { TakeView(size); }
  /// What is left of the message.
  std::span<const std::byte> Rest() const { return stream_->Composed().subspan(position_); }
  static void CheckHeader(const Header& header, std::string_view name, uint64_t count,
                          HeaderType type) {
    if (header.name != name || header.count != count || header.type != type) {
      FailHeader(header, {name, count, type});
    }
  }
  /// Count and type only: the name has just been looked at.
  static void CheckMarker(const Header& header, uint64_t count = 0) {
    CheckHeader(header, header.name, count, HeaderType::MESS);
  }
  static void CheckNameAndCount(const Header& header, std::string_view name, uint64_t count) {
    if (header.name != name || header.count != count) FailNameAndCount(header, name, count);
  }

  /// The array behind a header that has been read.
  std::vector<int32_t> ReadInts(const Header& header);
  std::vector<double> ReadDoubles(const Header& header);
  std::vector<std::string> ReadStrings(const Header& header);
  /// The next entry, its name and type checked, and its count where one is given.
  std::vector<int32_t> ReadInts(std::string_view name, OptionalCount count = {});
  std::vector<double> ReadDoubles(std::string_view name, OptionalCount count = {});
  std::vector<std::string> ReadStrings(std::string_view name, OptionalCount count = {});
  void AppendStrings(const Header& header, std::vector<std::string>& values);
  /// The one string behind a header whose count is known to be 1, as a view into the message.
  std::string_view ReadText(const Header& header);
  /// As many elements as a header tells that is known whole.
  void ReadElements(std::span<double> values) { TakeElements(values.size(), values.data()); }
  void ReadElements(std::span<std::string> values);

  void ExpectMarker(std::string_view name);
  /// The message must have been read to its last byte; the stream is free for the next one.
  void EndOfMessage();

 private:
  [[noreturn]] static void FailShort();
  [[noreturn]] static void FailHeader(const Header& received, const Header& expected);
  [[noreturn]] static void FailNameAndCount(const Header& received, std::string_view name,
                                            uint64_t count);
  void RequireElements(uint64_t count, uint64_t leastSize) const;
  std::string_view TakeView(uint64_t length) {
    if (length > Rest().size()) FailShort();
    position_ += length;
    return {reinterpret_cast<const char*>(Rest().data()) - length, length};
  }
  template <class T>
  T TakeScalar() {
    T value;
    std::memcpy(&value, TakeView(sizeof value).data(), sizeof value);
    return value;
  }
  std::string_view TakeText() { return TakeView(TakeScalar<uint64_t>()); }
  template <class T>
  void TakeElements(uint64_t count, T* target) {
    if (count == 0) return;
    std::memcpy(target, TakeView(count * sizeof(T)).data(), count * sizeof(T));
  }
  template <class T>
  std::vector<T> TakeArray(uint64_t count);
  Header ReadHeaderOf(std::string_view name, OptionalCount count, HeaderType type);

  MessageStream* stream_;
  uint64_t position_ = 0;
};

}  // namespace gantry
