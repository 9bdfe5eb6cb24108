#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/connector_base.h"

namespace gantry {

class LinkSettings;

/// One run of the simulator: starts it, holds the connector that speaks to it, says whether it is
/// alive. Nothing ends a simulator by force: the destructor asks its connector to shut down,
/// swallows what that throws, and drops it. Used by one thread at a time, for one `Start`.
class CJobSession {
 public:
  explicit CJobSession(const LinkSettings& settings);

  /// What `Kill` returns, or false if nothing runs.
  virtual bool StopIfRunning();
  virtual ~CJobSession();
  virtual bool IsRunning() { return false; }
  virtual int32_t Kill() { return 0; }
  virtual std::string GetHostDescription() = 0;
  virtual void OnIdle() {}
  /// 0 on success; 1 with the reason in `message`.
  virtual int32_t Start(std::string& message) = 0;

  /// Null until a start has succeeded.
  std::unique_ptr<CExtConnectorBase> Connector;

 protected:
  const LinkSettings& Settings;
  int32_t ScenarioNumber;  ///< 0 outside a batch scheduler, else its scenario plus 1
};

}  // namespace gantry
