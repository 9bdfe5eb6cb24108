#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <boost/system/system_error.hpp>

#include "client/byte_channel.h"

namespace gantry::test {

/// A connection to a peer that has said everything beforehand: reads come from `incoming` (its end
/// is the end of the stream), writes gather in `outgoing`, one entry of `writes` for each.
class MemoryConnection : public PeerConnection {
 public:
  explicit MemoryConnection(std::string bytes = {}) : incoming(std::move(bytes)) {}

  void Connect(const std::string&, uint32_t, uint32_t) override {}

  void Read(std::span<std::byte> bytes) override {
    largestRead = std::max(largestRead, bytes.size());
    if (bytes.size() > incoming.size() - position) {
      throw boost::system::system_error(
          boost::system::errc::make_error_code(boost::system::errc::connection_reset), "read");
    }
    if (!bytes.empty()) std::memcpy(bytes.data(), incoming.data() + position, bytes.size());
    position += bytes.size();
  }

  void Write(std::span<const std::byte> bytes) override {
    outgoing.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    writes.push_back(bytes.size());
  }

  std::string incoming;
  size_t position = 0;
  size_t largestRead = 0;
  std::string outgoing;
  std::vector<size_t> writes;
};

}  // namespace gantry::test
