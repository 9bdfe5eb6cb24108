#include "ui/case_settings_dlg.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"
#include "ui/stopped_case.h"

namespace gantry {
namespace {

using namespace case_settings_id;
using platform::kCancelButton;
using platform::kOkButton;
using test::MemoryWindow;

/// A case whose simulator runs until it has been asked about `testsUntilStopped` times.
struct TestCase : test::StoppedCase {
  bool IsRunning() override {
    if (isStopping && testsUntilStopped-- <= 0) isRunning = false;
    return isRunning;
  }
  int32_t CloseSimulator() override {
    ++closeCalls;
    isStopping = closeResult == 0;
    return closeResult;
  }
  void SetUpInflow(void* window) override { setUpOver = window; }

  bool isRunning = false;
  bool isStopping = false;
  int testsUntilStopped = 0;
  int closeCalls = 0;
  int32_t closeResult = 0;
  void* setUpOver = nullptr;
};

class CaseSettingsDialog : public ::testing::Test {
 protected:
  CaseSettingsDialog() {
    model.settings.FileName = "/cases/a.afi";
    model.settings.SimExeName = "/ix";
    for (const int32_t mode : {3, 2}) {
      model.wells.Items.emplace_back().Name = "W" + std::to_string(mode);
      model.wells.Items.back().OpMode = mode;
    }
  }

  CCaseSettingsDlg& Dialog() {
    dialog = std::make_unique<CCaseSettingsDlg>(model, config);
    return *dialog;
  }

  test::TestFolder folder;
  CIXConfig config;
  TestCase model;
  std::unique_ptr<CCaseSettingsDlg> dialog;
};

TEST_F(CaseSettingsDialog, ShowsTheSettings) {
  model.settings.ConnectionMode = 1;
  model.settings.HeadNode = "head";
  model.settings.LinuxIXVersion = 20172;
  model.settings.Parallel = 8;
  model.settings.UpTimeMode = 1;
  config.SimExecutable = "/opt/ix";
  MemoryWindow window(Dialog());
  EXPECT_EQ(window.Selection(kComputer), 1);
  EXPECT_EQ(window.Text(kHeadNode), "head");
  EXPECT_EQ(window.Text(kHeadNodePort), "7777");
  EXPECT_EQ(window.Selection(kLinuxVersion), 2);
  EXPECT_EQ(window.Text(kSimExeName), "/ix");
  EXPECT_TRUE(window.At(kFileName).isCaretBehindText);
  EXPECT_EQ(window.Text(kParallel), "8");
  EXPECT_EQ(window.Selection(kControlMode), 2) << "the last well's";
  EXPECT_EQ(window.Selection(kDowntime), 1);
  EXPECT_EQ(window.Text(kDefaultSimulator), "Blank to use the configured default: /opt/ix");
  EXPECT_EQ(window.At(kDefaultSimulator).toolTip, "/opt/ix");
}

TEST_F(CaseSettingsDialog, ShowsNothingOfADefaultThatIsNotConfigured) {
  MemoryWindow window(Dialog());
  EXPECT_EQ(window.Text(kDefaultSimulator), "");
  EXPECT_EQ(window.At(kDefaultSimulator).toolTip, "");
}

struct EnabledCase {
  bool isRunning;
  int connectionMode;
  int inflowModel;
  bool cluster, browse, calculate;
};

TEST_F(CaseSettingsDialog, EnablesWhatTheStateAllows) {
  for (const EnabledCase& state : {EnabledCase{false, 0, 1, false, true, true},
                                   {false, 0, 0, false, true, false},
                                   {false, 1, 1, true, false, true},
                                   {true, 0, 1, false, false, false},
                                   {true, 1, 0, false, false, false}}) {
    model.isRunning = state.isRunning;
    model.settings.ConnectionMode = state.connectionMode;
    model.settings.IPRModel = state.inflowModel;
    MemoryWindow window(Dialog());
    for (const int id : {kHeadNode, kHeadNodePort, kLinuxVersion}) {
      EXPECT_EQ(window.At(id).isEnabled, state.cluster) << id;
    }
    for (const int id : {kBrowseDataset, kBrowseSimulator}) {
      EXPECT_EQ(window.At(id).isEnabled, state.browse) << id;
    }
    EXPECT_EQ(window.At(kCalculate).isEnabled, state.calculate);
    EXPECT_TRUE(window.At(kOkButton).isEnabled);
    EXPECT_EQ(window.Text(kStartStop), state.isRunning ? "Stop" : "Start");
  }
}

TEST_F(CaseSettingsDialog, GreysOkOnlyAtTheNextRefreshAfterTheDatasetChanged) {
  MemoryWindow window(Dialog());
  window.SetText(kFileName, "/cases/b.afi");
  EXPECT_TRUE(window.At(kOkButton).isEnabled);
  window.Choose(kDowntime, 1);
  EXPECT_TRUE(window.At(kOkButton).isEnabled) << "no cause of a refresh";
  window.Choose(kIPRModel, 0);
  EXPECT_FALSE(window.At(kOkButton).isEnabled);
  EXPECT_FALSE(window.At(kCalculate).isEnabled);
  window.SetText(kFileName, "/cases/a.afi");
  window.Choose(kComputer, 1);
  EXPECT_TRUE(window.At(kOkButton).isEnabled);
  EXPECT_TRUE(window.At(kHeadNode).isEnabled);
}

TEST_F(CaseSettingsDialog, SavesWithOkWithoutAskingForARun) {
  MemoryWindow window(Dialog());
  window.SetText(kSimExeName, "/ix2");
  window.SetText(kHeadNode, "node");
  window.SetText(kHeadNodePort, "8000");
  window.SetText(kParallel, "4");
  window.Choose(kLinuxVersion, 1);
  window.Choose(kControlMode, 1);
  window.SetChecked(kCloseUnconnected, true);
  window.Choose(kDowntime, 1);
  window.Press(kOkButton);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_FALSE(dialog->StartRequested());
  EXPECT_EQ(model.settings.SimExeName, "/ix2");
  EXPECT_EQ(model.settings.HeadNodePort, 8000);
  EXPECT_EQ(model.settings.Parallel, 4);
  EXPECT_EQ(model.settings.LinuxIXVersion, 20162);
  EXPECT_TRUE(model.settings.CloseUnconnectedWells);
  EXPECT_EQ(model.settings.UpTimeMode, 1);
  for (const auto& well : model.wells.Items) EXPECT_EQ(well.OpMode, 1);
  LinkSettings kept;
  kept.LoadFromRegistry();
  EXPECT_EQ(kept.SimExeName, "/ix2");
  EXPECT_EQ(kept.HeadNode, "node");
}

TEST_F(CaseSettingsDialog, CorrectsNumbersWithoutAWord) {
  struct Numbers {
    const char* port;
    const char* parallel;
    int32_t storedPort, storedParallel;
  };
  for (const Numbers& numbers : {Numbers{"0", "0", 1, 1},
                                 {"port", "600", 1, 512},
                                 {"-3", "many", 1, 1},
                                 {"9", "512", 9, 512}}) {
    model.settings.LinuxIXVersion = 31337;  // not on the list: shown as the first
    MemoryWindow window(Dialog());
    EXPECT_EQ(window.Selection(kLinuxVersion), 0);
    window.SetText(kHeadNodePort, numbers.port);
    window.SetText(kParallel, numbers.parallel);
    window.Press(kOkButton);
    EXPECT_EQ(model.settings.HeadNodePort, numbers.storedPort);
    EXPECT_EQ(model.settings.Parallel, numbers.storedParallel);
    EXPECT_EQ(model.settings.LinuxIXVersion, 100000);
    EXPECT_TRUE(window.messages.empty());
  }
}

TEST_F(CaseSettingsDialog, RestoresEverythingWithCancel) {
  MemoryWindow window(Dialog());
  window.Choose(kComputer, 1);
  window.Choose(kIPRModel, 0);
  window.pickedFile = "/other";
  window.Press(kBrowseSimulator);
  EXPECT_EQ(model.settings.SimExeName, "/ix") << "greyed on a cluster";
  window.Choose(kComputer, 0);
  window.Press(kBrowseSimulator);
  window.Press(kBrowseDataset);
  EXPECT_EQ(model.settings.SimExeName, "/other") << "at once";
  EXPECT_EQ(model.settings.FileName, "/other");
  EXPECT_TRUE(window.At(kFileName).isCaretBehindText);
  window.inNested = [](MemoryWindow& nested) {
    nested.SetChecked(advanced_id::kStdLogging, true);
    nested.Press(kOkButton);
  };
  window.Press(kAdvanced);
  EXPECT_TRUE(model.settings.StdLogging);
  window.Press(kCancelButton);
  EXPECT_EQ(window.result, kCancelButton);
  EXPECT_EQ(model.settings.ConnectionMode, 0);
  EXPECT_EQ(model.settings.IPRModel, 1);
  EXPECT_EQ(model.settings.SimExeName, "/ix");
  EXPECT_EQ(model.settings.FileName, "/cases/a.afi");
  EXPECT_FALSE(model.settings.StdLogging);
  EXPECT_EQ(model.wells.Items[0].OpMode, 3);
}

TEST_F(CaseSettingsDialog, AsksForARunWithStartAlone) {
  MemoryWindow window(Dialog());
  window.SetText(kFileName, "/cases/b.afi");
  window.Press(kStartStop);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_TRUE(dialog->StartRequested());
  EXPECT_EQ(model.settings.FileName, "/cases/b.afi");
}

TEST_F(CaseSettingsDialog, StaysOpenAfterAStopAndOffersAStart) {
  model.isRunning = true;
  MemoryWindow window(Dialog());
  window.SetText(kFileName, "/cases/b.afi");
  model.testsUntilStopped = 3;
  window.Press(kStartStop);
  EXPECT_FALSE(window.result);
  EXPECT_EQ(window.pauses, std::vector<int>(3, 1000));
  EXPECT_TRUE(window.wasWaitingInPauses);
  EXPECT_FALSE(window.isWaiting);
  EXPECT_EQ(window.Text(kStartStop), "Start");
  EXPECT_FALSE(window.At(kOkButton).isEnabled);
}

TEST_F(CaseSettingsDialog, CancelsWhenTheSimulatorCannotBeStopped) {
  for (const int32_t result : {0, 1}) {
    model.isRunning = true;
    model.isStopping = false;
    model.testsUntilStopped = 20;
    model.closeResult = result;
    MemoryWindow window(Dialog());
    window.pickedFile = "/other";
    window.Choose(kComputer, 1);
    window.Press(kStartStop);
    EXPECT_EQ(window.result, kCancelButton);
    EXPECT_EQ(window.pauses.size(), result == 0 ? 19u : 0u);
    EXPECT_EQ(model.settings.ConnectionMode, 0);
    EXPECT_FALSE(dialog->StartRequested());
  }
}

TEST_F(CaseSettingsDialog, CalculatesOverItsOwnWindowAndStopsTheSimulatorAfterwards) {
  MemoryWindow window(Dialog());
  window.Press(kCalculate);
  EXPECT_EQ(model.setUpOver, &window);
  EXPECT_EQ(model.closeCalls, 1);
  model.wells.Items.clear();
  window.Press(kCalculate);
  EXPECT_EQ(model.closeCalls, 1) << "nothing without wells";
  EXPECT_FALSE(window.result);
}

TEST_F(CaseSettingsDialog, OpensTheConfigurationAndTheHelp) {
  MemoryWindow window(Dialog());
  window.inNested = [](MemoryWindow& nested) {
    nested.SetText(configure_id::kSimExecutable, "/new");
    nested.Press(kOkButton);
  };
  window.Press(kConfiguration);
  EXPECT_EQ(config.SimExecutable, "/new");
  EXPECT_EQ(window.Text(kDefaultSimulator), "") << "until the dialog is opened again";
  window.Press(kHelp);
  EXPECT_EQ(window.helpTopic, 13930u);
}

}  // namespace
}  // namespace gantry
