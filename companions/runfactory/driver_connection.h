#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/posix/descriptor.h"

namespace gantry::cluster {

/// The driver has gone, or is none.
class DriverBroken : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A session's connection to its driver, blocking. Throws `DriverBroken`.
class DriverConnection {
 public:
  explicit DriverConnection(platform::Descriptor socket);

  void SendText(std::string_view text);
  /// A frame of that routine: its number, the results, and the acknowledgement if there is one.
  void SendReply(uint32_t routine, std::span<const std::byte> results);
  /// The next request's body, routine number included, good until the next call. Empty when the
  /// driver has closed between two requests.
  std::span<const std::byte> Receive();

 private:
  void SendAll(std::span<const std::byte> bytes);
  size_t ReceiveSome(std::span<std::byte> bytes);

  platform::Descriptor socket_;
  std::vector<std::byte> request_;
};

}  // namespace gantry::cluster
