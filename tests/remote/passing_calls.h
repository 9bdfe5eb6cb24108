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

  std::function<bool()> startUp = [this] { return system.StartUp(); };
  std::function<void()> cleanUp = [this] { system.CleanUp(); };
  std::function<Handle()> openTcp = [this] { return system.OpenTcp(); };
  std::function<void(Handle)> close = [this](Handle s) { system.Close(s); };
  std::function<std::optional<uint32_t>(const std::string&)> findHost =
      [this](const std::string& name) { return system.FindHost(name); };
  std::function<int(Handle, uint32_t, uint16_t)> connect = [this](Handle s, uint32_t address,
                                                                  uint16_t port) {
    return system.Connect(s, address, port);
  };
  std::function<Handle(Handle)> accept = [this](Handle s) { return system.Accept(s); };
  std::function<int(std::optional<int>)> select;
  std::function<int64_t(Handle, std::span<const std::byte>)> send =
      [this](Handle s, std::span<const std::byte> bytes) { return system.Send(s, bytes); };
  std::function<int64_t(Handle, std::span<std::byte>)> receive =
      [this](Handle s, std::span<std::byte> bytes) { return system.Receive(s, bytes); };
  std::function<void(Handle)> pause = [this](Handle s) { system.PauseOnClosedPeer(s); };
  std::function<int()> lastError = [this] { return system.LastError(); };
  std::function<bool(int)> isWouldBlock = [this](int error) { return system.IsWouldBlock(error); };

  bool StartUp() override { return startUp(); }
  void CleanUp() override { cleanUp(); }
  Handle OpenTcp() override { return openTcp(); }
  void Close(Handle s) override { close(s); }
  bool SetBlocking(Handle s, bool blocking) override { return system.SetBlocking(s, blocking); }
  std::optional<uint32_t> FindHost(const std::string& name) override { return findHost(name); }
  int Connect(Handle s, uint32_t address, uint16_t port) override {
    return connect(s, address, port);
  }
  int Bind(Handle s, uint16_t port) override { return system.Bind(s, port); }
  int Listen(Handle s, int backlog) override { return system.Listen(s, backlog); }
  Handle Accept(Handle s) override { return accept(s); }
  int Select(Handle s, bool orWritable, std::optional<int> limit) override {
    return select ? select(limit) : system.Select(s, orWritable, limit);
  }
  int64_t Send(Handle s, std::span<const std::byte> bytes) override { return send(s, bytes); }
  int64_t Receive(Handle s, std::span<std::byte> bytes) override { return receive(s, bytes); }
  int64_t Available(Handle s) override { return system.Available(s); }
  void PauseOnClosedPeer(Handle s) override { pause(s); }
  int LastError() override { return lastError(); }
  bool IsWouldBlock(int error) override { return isWouldBlock(error); }
  bool IsInProgress(int error) override { return system.IsInProgress(error); }

  platform::SocketCalls& system = platform::SystemSockets();
  platform::SocketCallsOverride inPlace{*this};
};

}  // namespace gantry::test
