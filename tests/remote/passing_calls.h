#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/sockets.h"

namespace gantry::test {

/// The system's calls while it lives, of which a test changes those that it sets.
class PassingCalls : public platform::SocketCalls {
 public:
  using Handle = platform::SocketHandle;

  std::function<bool()> startUp;
  std::function<void()> cleanUp;
  std::function<Handle()> openTcp;
  std::function<void(Handle)> close;
  std::function<std::optional<uint32_t>(const std::string&)> findHost;
  std::function<int()> connect;
  std::function<Handle()> accept;
  std::function<int(std::optional<int>)> select;
  std::function<int64_t(Handle, std::span<const std::byte>)> send;
  std::function<int64_t(Handle, std::span<std::byte>)> receive;
  std::function<void(Handle)> pause;
  std::function<int()> lastError;
  std::function<bool()> isWouldBlock;

  bool StartUp() override { return startUp ? startUp() : system.StartUp(); }
  void CleanUp() override { cleanUp ? cleanUp() : system.CleanUp(); }
  Handle OpenTcp() override { return openTcp ? openTcp() : system.OpenTcp(); }
  void Close(Handle s) override { close ? close(s) : system.Close(s); }
  bool SetBlocking(Handle s, bool blocking) override { return system.SetBlocking(s, blocking); }
  std::optional<uint32_t> FindHost(const std::string& name) override {
    return findHost ? findHost(name) : system.FindHost(name);
  }
  int Connect(Handle s, uint32_t address, uint16_t port) override {
    return connect ? connect() : system.Connect(s, address, port);
  }
  int Bind(Handle s, uint16_t port) override { return system.Bind(s, port); }
  int Listen(Handle s, int backlog) override { return system.Listen(s, backlog); }
  Handle Accept(Handle s) override { return accept ? accept() : system.Accept(s); }
  int Select(Handle s, bool orWritable, std::optional<int> limit) override {
    return select ? select(limit) : system.Select(s, orWritable, limit);
  }
  int64_t Send(Handle s, std::span<const std::byte> bytes) override {
    return send ? send(s, bytes) : system.Send(s, bytes);
  }
  int64_t Receive(Handle s, std::span<std::byte> bytes) override {
    return receive ? receive(s, bytes) : system.Receive(s, bytes);
  }
  int64_t Available(Handle s) override { return system.Available(s); }
  void PauseOnClosedPeer(Handle s) override { pause ? pause(s) : system.PauseOnClosedPeer(s); }
  int LastError() override { return lastError ? lastError() : system.LastError(); }
  bool IsWouldBlock(int error) override {
    return isWouldBlock ? isWouldBlock() : system.IsWouldBlock(error);
  }
  bool IsInProgress(int error) override { return system.IsInProgress(error); }

  platform::SocketCalls& system = platform::SystemSockets();
  platform::SocketCallsOverride inPlace{*this};
};

}  // namespace gantry::test
