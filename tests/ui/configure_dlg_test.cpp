#include "ui/configure_dlg.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"

namespace gantry::test {
namespace {

TEST(ConfigureDialog, IsNeverSeenHalfDoneByAStartOfAnotherThread) {
  const TestFolder folder;
  CIXConfig config;
  CConfigureDlg dialog(config);
  MemoryWindow window(dialog);
  std::atomic<bool> hasEnded = false;
  const std::jthread host([&] {
    for (size_t i = 0; i < 5000; ++i) {
      const std::string path(1000, i % 2 == 0 ? 'a' : 'b');
      window.SetText(configure_id::kSimExecutable, path);
      window.SetText(configure_id::kCmdLine, path);
      dialog.OnButton(window, platform::kOkButton);
    }
    hasEnded = true;
  });
  while (!hasEnded) {
    const LaunchSettings seen = config.ForLaunch();
    ASSERT_EQ(seen.CmdLine, seen.SimExecutable);
  }
}

}  // namespace
}  // namespace gantry::test
