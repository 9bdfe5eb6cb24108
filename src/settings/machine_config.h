#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/lock.h"

namespace gantry {

/// The registry key, under the current user, that holds the configuration and the last used case.
extern const char* const kRegistryKey;

/// One well property of the simulator that the user has exposed to the host.
struct CIXUserProperty {
  std::string Property;       ///< the simulator's name
  std::string SimulatorItem;  ///< stays empty: such a property is read-only
  std::string DisplayName;
  uint32_t UnitCode = 60051;
  int32_t UnitFamily = -1;
  int32_t IsScalar = 1;  ///< 1 a scalar, 0 a component array
};

/// How simulators are started on this machine.
struct LaunchSettings {
  std::string SimExecutable;
  std::string MPIExecutable;
  std::string CmdLine;
  int32_t StartPort = 9001;
  int32_t EndPort = 9101;
};

/// What holds for all cases of one user on one machine. Lives in the application object, mirrored
/// in the registry: read at construction, written at destruction. No failure reaches the user: a
/// missing or wrong value keeps its default. Its fields belong to the host's own thread; a start,
/// which may come from another one, takes a copy of what it needs.
class CIXConfig : public LaunchSettings {
 public:
  CIXConfig();                                            ///< from the standard key
  CIXConfig(uintptr_t root, const std::string& keyPath);  ///< from another place
  ~CIXConfig();                                           ///< saves

  /// Appends to the user properties; these are always read under the current user.
  void Load(uintptr_t root, const std::string& keyPath);
  /// Always to the standard key.
  void Save() const;

  /// All of one moment, never in the middle of a change. From any thread.
  LaunchSettings ForLaunch() const;
  void SetForLaunch(LaunchSettings settings);

  std::vector<std::unique_ptr<CIXUserProperty>> UserProperties;

 private:
  bool isUnread_ = false;  ///< the user's own settings couldn't be read, and aren't written over
  mutable platform::CriticalSection section_;
};

}  // namespace gantry
