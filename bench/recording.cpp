#include "recording.h"

namespace gantry::bench {
namespace {

void Append(Bytes& bytes, std::span<const std::byte> more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void SendNumber(ByteChannel& channel, uint64_t number) {
  channel.Write(std::as_bytes(std::span(&number, 1)));
}

uint64_t ReceiveNumber(ByteChannel& channel) {
  uint64_t number = 0;
  channel.Read(std::as_writable_bytes(std::span(&number, 1)));
  return number;
}

void SendBytes(ByteChannel& channel, const Bytes& bytes) {
  SendNumber(channel, bytes.size());
  channel.Write(bytes);
}

Bytes ReceiveBytes(ByteChannel& channel) {
  Bytes bytes(ReceiveNumber(channel));
  channel.Read(bytes);
  return bytes;
}

}  // namespace

void RecordingChannel::Read(std::span<std::byte> bytes) {
  channel_.Read(bytes);
  if (exchanges_.empty() || !exchanges_.back().reply.empty()) exchanges_.emplace_back();
  Append(exchanges_.back().request, bytes);
}

void RecordingChannel::Write(std::span<const std::byte> bytes) {
  Append(exchanges_.back().reply, bytes);
  channel_.Write(bytes);
}

void SendRecording(ByteChannel& channel, const Recording& recording) {
  SendNumber(channel, recording.size());
  for (const Exchange& exchange : recording) {
    SendBytes(channel, exchange.request);
    SendBytes(channel, exchange.reply);
  }
}

Recording ReceiveRecording(ByteChannel& channel) {
  Recording recording(ReceiveNumber(channel));
  for (Exchange& exchange : recording) {
    exchange.request = ReceiveBytes(channel);
    exchange.reply = ReceiveBytes(channel);
  }
  return recording;
}

}  // namespace gantry::bench
