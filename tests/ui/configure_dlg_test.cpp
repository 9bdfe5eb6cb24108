#include "ui/configure_dlg.h"

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
  std::jthread host([&](const std::stop_token& ended) {
    for (size_t i = 0; !ended.stop_requested(); ++i) {
      const std::string path(1000, i % 2 == 0 ? 'a' : 'b');
      window.SetText(configure_id::kSimExecutable, path);
      window.SetText(configure_id::kCmdLine, path);
      dialog.OnButton(window, platform::kOkButton);
    }
  });
  while (config.ForLaunch().CmdLine.empty()) std::this_thread::yield();
  for (int i = 0; i < 100000; ++i) {
    const LaunchSettings seen = config.ForLaunch();
    ASSERT_EQ(seen.CmdLine, seen.SimExecutable);
  }
}

}  // namespace
}  // namespace gantry::test
