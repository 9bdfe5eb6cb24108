#pragma once

#include <memory>
#include <string>
#include <thread>

#include "client/tcp_connection.h"
#include "simulator_side/controller_session.h"
#include "support/wire_entries.h"
#include "tanksim/tank_simulator.h"

namespace gantry::simulator::test {

/// A deck behind a real port: one session with the first controller that comes.
class ServedSimulator {
 public:
  explicit ServedSimulator(Deck deck)
      : simulator_(std::move(deck)), listener_(0), thread_([this] { Serve(); }) {}
  ~ServedSimulator() {
    if (thread_.joinable()) thread_.join();
  }

  uint16_t Port() const { return listener_.Port(); }
  /// Waits for the session's end; what ended it, empty for a shutdown.
  std::string Failure() {
    thread_.join();
    return failure_;
  }

 private:
  void Serve() {
    try {
      const auto connection = listener_.Accept(20);
      if (connection) ControllerSession(simulator_, *connection).Run();
    } catch (const std::exception& failure) {
      failure_ = failure.what();
    }
  }

  TankSimulator simulator_;
  TcpListener listener_;
  std::string failure_;
  std::thread thread_;
};

/// A controller that says and hears what a test writes down, with the tests' own codec.
class RawController {
 public:
  using Entries = gantry::test::Entries;

  explicit RawController(uint16_t port) { connection_.Connect("localhost", port, 5); }

  void Send(const Entries& entries) {
    const std::string bytes = gantry::test::Frame(entries);
    connection_.Write(std::as_bytes(std::span(bytes)));
  }
  /// Any frame of one chunk.
  Entries Receive() {
    const std::string size = ReceiveBytes(8);
    uint64_t total = 0;
    std::memcpy(&total, size.data(), sizeof total);
    ReceiveBytes(8);
    return gantry::test::Decode(ReceiveBytes(total));
  }

 private:
  std::string ReceiveBytes(size_t size) {
    std::string bytes(size, '\0');
    connection_.Read(std::as_writable_bytes(std::span(bytes)));
    return bytes;
  }

  TcpConnection connection_;
};

}  // namespace gantry::simulator::test
