#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/named_mutex.h"
#include "platform/process.h"
#include "sessions/job_session.h"

namespace gantry {

struct LaunchSettings;

/// A simulator that runs as a process on this machine. From its construction on, the session holds
/// a slot that no other session of this machine has, in whatever process; the slot gives the port.
class CWindowsJobSession : public CJobSession {
 public:
  explicit CWindowsJobSession(const LinkSettings& settings);
  ~CWindowsJobSession() override;

  bool IsRunning() override;
  std::string GetHostDescription() override { return "Local host"; }
  int32_t Start(std::string& message) override;

 private:
  struct Launch {
    std::string application;
    std::string commandLine;
  };

  void TakeSlot();
  int32_t ChoosePort(const LaunchSettings& machine) const;
  /// False with the reason in `message`.
  bool ComposeLaunch(const LaunchSettings& machine, int32_t port, Launch& launch,
                     std::string& message) const;
  /// 0 on success; 1 with the reason in `message`. The process that it has started stays.
  int32_t LaunchAndConnect(const LaunchSettings& machine, const Launch& launch, int32_t port,
                           std::string& message);

  std::unique_ptr<platform::ChildProcess> ProcessHandle;
  std::unique_ptr<platform::NamedMutex> SlotMutexHandle;
  uint32_t SlotIndex = 0;
  std::string slotFailure_;  ///< why there is no slot; empty when there is one
};

}  // namespace gantry
