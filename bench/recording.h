#pragma once

#include <cstddef>
#include <vector>

#include "client/byte_channel.h"

namespace gantry::bench {

using Bytes = std::vector<std::byte>;

/// One request as it went over the socket, and all that came back for it.
struct Exchange {
  Bytes request;
  Bytes reply;
};
using Recording = std::vector<Exchange>;

/// A channel that notes what passes through it, seen from the answering side.
class RecordingChannel : public ByteChannel {
 public:
  explicit RecordingChannel(ByteChannel& channel) : channel_(channel) {}

  void Read(std::span<std::byte> bytes) override;
  void Write(std::span<const std::byte> bytes) override;

  Recording& Exchanges() { return exchanges_; }

 private:
  ByteChannel& channel_;
  Recording exchanges_;
};

void SendRecording(ByteChannel& channel, const Recording& recording);
Recording ReceiveRecording(ByteChannel& channel);

}  // namespace gantry::bench
