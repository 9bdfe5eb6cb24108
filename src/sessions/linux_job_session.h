#pragma once

#include <cstdint>
#include <string>

#include "platform/lock.h"
#include "sessions/job_session.h"

namespace gantry {

class SocketClient;

/// A run on a cluster. `Start` tells the run factory on the head node which case to run and how;
/// the connection of that dialogue then belongs to the remote connector until the end of the run.
/// Owned by the model. Nothing here has a time limit: `Start` blocks for as long as the factory
/// takes to answer.
class CLinuxJobSession : public CJobSession {
 public:
  explicit CLinuxJobSession(const LinkSettings& settings) : CJobSession(settings) {}
  ~CLinuxJobSession() override;

  bool IsRunning() override { return Connector != nullptr; }
  /// Where the factory placed the run; empty before a start has succeeded.
  std::string GetHostDescription() override { return HostName; }
  int32_t Start(std::string& message) override;

 private:
  int32_t Converse(std::string& message);
  bool AgreeOnVersion(SocketClient& factory, std::string& message);
  bool DescribeRun(SocketClient& factory, std::string& message) const;
  bool ReadAnswer(SocketClient& factory, std::string& message);
  int32_t Connect(const SocketClient& factory, std::string& message);

  int32_t FactoryVersion = 0;
  std::string HostName;
  platform::CriticalSection StartLock;
};

}  // namespace gantry
