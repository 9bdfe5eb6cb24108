#include "simulator_side/message_log.h"

#include <cstring>
#include <sstream>
#include <stdexcept>

#include "client/message_stream.h"
#include "platform/file_path.h"

namespace gantry::simulator {

namespace {

/// Bytes in memory as a channel, for decoding a recorded frame.
class RecordedFrame : public ByteChannel {
 public:
  explicit RecordedFrame(std::span<const std::byte> bytes) : bytes_(bytes) {}

  void Read(std::span<std::byte> bytes) override {
    if (bytes.size() > bytes_.size()) throw std::length_error("the frame ends early");
    if (!bytes.empty()) std::memcpy(bytes.data(), bytes_.data(), bytes.size());
    bytes_ = bytes_.subspan(bytes.size());
  }
  void Write(std::span<const std::byte>) override {}

 private:
  std::span<const std::byte> bytes_;
};

uint64_t WordAt(std::span<const std::byte> bytes, size_t offset) {
  uint64_t word = 0;
  std::memcpy(&word, bytes.data() + offset, sizeof word);
  return word;
}

/// True when the bytes hold a frame to its last chunk.
bool IsWhole(std::span<const std::byte> frame) {
  if (frame.size() < 2 * sizeof(uint64_t)) return false;
  const uint64_t total = WordAt(frame, 0);
  uint64_t received = 0;
  size_t offset = sizeof(uint64_t);
  while (received < total) {
    if (frame.size() - offset < sizeof(uint64_t)) return false;
    const uint64_t length = WordAt(frame, offset);
    offset += sizeof(uint64_t);
    if (frame.size() - offset < length) return false;
    offset += length;
    received += length;
  }
  return true;
}

template <class T>
void PutValues(std::ostream& out, const std::vector<T>& values) {
  for (const T& value : values) out << ' ' << value;
}

void PutEntry(std::ostream& out, IncomingMessage& message, const Header& header) {
  out << ' ' << header.name;
  if (header.type == HeaderType::MESS) return;
  out << "[" << header.count << "]";
  if (header.type == HeaderType::INTE) PutValues(out, message.ReadInts(header));
  if (header.type == HeaderType::DOUB) PutValues(out, message.ReadDoubles(header));
  if (header.type != HeaderType::CSTR) return;
  for (const std::string& text : message.ReadStrings(header)) out << " \"" << text << '"';
}

std::string Describe(std::span<const std::byte> frame) {
  std::ostringstream line;
  line.precision(10);
  RecordedFrame channel(frame);
  MessageStream stream(channel);
  try {
    IncomingMessage message = stream.ReceiveMessage();
    for (bool ended = false; !ended;) {
      const Header header = message.ReadHeader();
      PutEntry(line, message, header);
      ended = header.name == "END";
    }
  } catch (const std::exception& failure) {
    line << " (" << failure.what() << ')';
  }
  return line.str();
}

}  // namespace

MessageLog::MessageLog(ByteChannel& channel, const std::filesystem::path& file)
    : channel_(channel), file_(file, std::ios::binary) {
  if (!file_) throw std::runtime_error("can't write the message log " + platform::NameOf(file));
}

void MessageLog::Read(std::span<std::byte> bytes) {
  channel_.Read(bytes);
  Follow(bytes, incoming_, '<');
}

void MessageLog::Write(std::span<const std::byte> bytes) {
  channel_.Write(bytes);
  Follow(bytes, outgoing_, '>');
}

void MessageLog::Follow(std::span<const std::byte> bytes, std::vector<std::byte>& frame,
                        char direction) {
  frame.insert(frame.end(), bytes.begin(), bytes.end());
  if (!IsWhole(frame)) return;
  file_ << direction << Describe(frame) << std::endl;
  frame.clear();
}

}  // namespace gantry::simulator
