#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/sockets.h"

namespace gantry::test {

/// The system's calls, of which a test changes one.
class PassingCalls : public platform::SocketCalls {
 public:
  bool StartUp() override { return System().StartUp(); }
  void CleanUp() override { System().CleanUp(); }
  platform::SocketHandle OpenTcp() override { return System().OpenTcp(); }
  void Close(platform::SocketHandle socket) override { System().Close(socket); }
  bool SetBlocking(platform::SocketHandle socket, bool blocking) override {
    return System().SetBlocking(socket, blocking);
  }
  std::optional<uint32_t> FindHost(const std::string& name) override {
    return System().FindHost(name);
  }
  int Connect(platform::SocketHandle socket, uint32_t address, uint16_t port) override {
    return System().Connect(socket, address, port);
  }
  int Bind(platform::SocketHandle socket, uint16_t port) override {
    return System().Bind(socket, port);
  }
  int Listen(platform::SocketHandle socket, int backlog) override {
    return System().Listen(socket, backlog);
  }
  platform::SocketHandle Accept(platform::SocketHandle socket) override {
    return System().Accept(socket);
  }
  int Select(platform::SocketHandle socket, bool orWritable, std::optional<int> limit) override {
    return System().Select(socket, orWritable, limit);
  }
  int64_t Send(platform::SocketHandle socket, std::span<const std::byte> bytes) override {
    return System().Send(socket, bytes);
  }
  int64_t Receive(platform::SocketHandle socket, std::span<std::byte> bytes) override {
    return System().Receive(socket, bytes);
  }
  int64_t Available(platform::SocketHandle socket) override { return System().Available(socket); }
  void PauseOnClosedPeer(platform::SocketHandle socket) override {
    System().PauseOnClosedPeer(socket);
  }
  int LastError() override { return System().LastError(); }
  bool IsWouldBlock(int error) override { return System().IsWouldBlock(error); }
  bool IsInProgress(int error) override { return System().IsInProgress(error); }

 private:
  static platform::SocketCalls& System() { return platform::SystemSockets(); }
};

}  // namespace gantry::test
