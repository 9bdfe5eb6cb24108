#pragma once

#include "ui/case_settings_dlg.h"

namespace gantry::test {

/// A case in memory. Its simulator runs when told so, and ends once it has been asked about
/// `testsUntilStopped` times after a stop.
struct StubCase : EditedCase {
  LinkSettings& Settings() override { return settings; }
  StaticWellDataCollection& Wells() override { return wells; }
  bool IsRunning() override {
    if (closeCalls > 0 && closeResult == 0 && testsUntilStopped-- <= 0) isRunning = false;
    return isRunning;
  }
  int32_t CloseSimulator() override {
    ++closeCalls;
    return closeResult;
  }
  void SetUpInflow(void* window) override { setUpOver = window; }

  LinkSettings settings;
  StaticWellDataCollection wells;
  bool isRunning = false;
  int testsUntilStopped = 0;
  int closeCalls = 0;
  int32_t closeResult = 0;
  void* setUpOver = nullptr;
};

inline void Expose(CIXConfig& config, const std::string& name, const std::string& display,
                   int32_t family = -1, int32_t isScalar = 1) {
  auto property = std::make_unique<CIXUserProperty>();
  property->Property = name;
  property->DisplayName = display;
  property->UnitFamily = family;
  property->IsScalar = isScalar;
  config.UserProperties.push_back(std::move(property));
}

}  // namespace gantry::test
