#pragma once

#include "ui/case_settings_dlg.h"

namespace gantry::test {

/// A case in memory, whose simulator doesn't run.
struct StoppedCase : EditedCase {
  LinkSettings& Settings() override { return settings; }
  StaticWellDataCollection& Wells() override { return wells; }
  bool IsRunning() override { return false; }
  int32_t CloseSimulator() override { return 0; }
  void SetUpInflow(void* /*window*/) override {}

  LinkSettings settings;
  StaticWellDataCollection wells;
};

}  // namespace gantry::test
