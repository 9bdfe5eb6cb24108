#pragma once

#include <filesystem>
#include <fstream>
#include <vector>

#include "client/byte_channel.h"

namespace gantry::simulator {

/// A channel that passes everything on and writes each whole message to a text file, one line for
/// a message: "<" from the controller or ">" to it, then the entries with all their values.
class MessageLog : public ByteChannel {
 public:
  /// Throws runtime_error when the file can't be written. The channel must outlive the log.
  MessageLog(ByteChannel& channel, const std::filesystem::path& file);

  void Read(std::span<std::byte> bytes) override;
  void Write(std::span<const std::byte> bytes) override;

 private:
  void Follow(std::span<const std::byte> bytes, std::vector<std::byte>& frame, char direction);

  ByteChannel& channel_;
  std::ofstream file_;
  std::vector<std::byte> incoming_;  ///< the frame that is arriving, as far as it has come
  std::vector<std::byte> outgoing_;
};

}  // namespace gantry::simulator
