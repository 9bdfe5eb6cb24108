#pragma once

#include <functional>

#include "ui/case_settings_dlg.h"

namespace gantry::test {

/// A case in memory. Its simulator runs when told so, and ends once it has been asked about
/// `testsUntilStopped` times after a stop.
struct StubCase : EditedCase {
  LinkSettings& Settings() override { return settings; }
  StaticWellDataCollection& Wells() override { return wells; }
  bool IsRunning() override {
    if (isClosing && testsUntilStopped-- <= 0) isRunning = isClosing = false;
    return isRunning != 0;
  }
  int32_t CloseSimulator() override {
    tell("the simulator is closed");
    isClosing = closeResult == 0;
    return closeResult;
  }
  void SetUpInflow(void* window) override { setUpOver = window; }

  LinkSettings settings;
  StaticWellDataCollection wells;
  int32_t isRunning = 0;  ///< or 1
  int32_t testsUntilStopped = 0;
  int32_t closeResult = 0;
  bool isClosing = false;
  void* setUpOver = nullptr;
  std::function<void(const std::string&)> tell = [](auto&) {};
};

}  // namespace gantry::test
