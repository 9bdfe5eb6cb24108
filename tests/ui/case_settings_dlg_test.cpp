#include "ui/case_settings_dlg.h"

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"
#include "ui/stub_case.h"

namespace gantry::test {
namespace {

using namespace case_settings_id;
using namespace platform;

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

  MemoryWindow Open() {
    dialog = std::make_unique<CCaseSettingsDlg>(model, config);
    return MemoryWindow(*dialog);
  }
  static std::string Shown(const MemoryWindow& window) {
    return window.Values({kComputer, kHeadNode, kHeadNodePort, kLinuxVersion, kSimExeName,
                          kFileName, kParallel, kIPRModel, kCloseUnconnected, kDowntime,
                          kControlMode});
  }
  /// What the case holds by now, as another dialog shows it.
  std::string Held() {
    CCaseSettingsDlg other(model, config);
    return Shown(MemoryWindow(other));
  }

  TestFolder folder;
  CIXConfig config;
  StubCase model;
  std::unique_ptr<CCaseSettingsDlg> dialog;
};

TEST_F(CaseSettingsDialog, ShowsEverySettingAndSavesItWithOk) {
  LinkSettings& settings = model.settings;
  settings.ConnectionMode = settings.UpTimeMode = 1;
  settings.HeadNode = "head";
  settings.LinuxIXVersion = 20172;
  settings.Parallel = 8;
  MemoryWindow window = Open();
  EXPECT_EQ(Shown(window), "1|head|7777|2|/ix|/cases/a.afi|8|1|0|1|2") << "the last well's mode";
  EXPECT_TRUE(window.At(kSimExeName).isCaretBehindText);
  EXPECT_TRUE(window.At(kFileName).isCaretBehindText);
  window.Type(
      {{kHeadNode, "node"}, {kHeadNodePort, "8000"}, {kSimExeName, "/ix2"}, {kParallel, "4"}});
  for (const int list : {kLinuxVersion, kControlMode}) window.Choose(list, 1);
  for (const int list : {kIPRModel, kDowntime}) window.Choose(list, 0);
  window.SetChecked(kCloseUnconnected, true);
  window.Press(kOkButton);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_FALSE(dialog->StartRequested());
  EXPECT_EQ(Held(), "1|node|8000|1|/ix2|/cases/a.afi|4|0|1|0|1");
  EXPECT_EQ(settings.LinuxIXVersion, 20162);
  for (const auto& well : model.wells.Items) EXPECT_EQ(well.OpMode, 1);
  LinkSettings kept;
  kept.LoadFromRegistry();
  EXPECT_EQ(kept.SimExeName, "/ix2");
}

TEST_F(CaseSettingsDialog, TellsOfTheDefaultSimulatorWhereOneIsConfigured) {
  for (const std::string simulator : {"", "/opt/ix"}) {
    config.SimExecutable = simulator;
    MemoryWindow window = Open();
    EXPECT_EQ(window.Text(kDefaultSimulator),
              simulator.empty() ? "" : "Blank to use the configured default: /opt/ix");
    EXPECT_EQ(window.At(kDefaultSimulator).toolTip, simulator);
  }
}

TEST_F(CaseSettingsDialog, EnablesWhatTheStateAllows) {
  struct Row {
    bool isRunning;
    int connectionMode, inflowModel;
    std::string enabled;
  };
  for (const Row& row : {Row{false, 0, 1, "0001111"},
                         {false, 0, 0, "0001101"},
                         {false, 1, 1, "1110011"},
                         {true, 0, 1, "0000001"},
                         {true, 1, 0, "0000001"}}) {
    model.isRunning = row.isRunning;
    model.settings.ConnectionMode = row.connectionMode;
    model.settings.IPRModel = row.inflowModel;
    MemoryWindow window = Open();
    EXPECT_EQ(window.Enabled({kHeadNode, kHeadNodePort, kLinuxVersion, kBrowseDataset,
                              kBrowseSimulator, kCalculate, kOkButton}),
              row.enabled);
    EXPECT_EQ(window.Text(kStartStop), row.isRunning ? "Stop" : "Start");
  }
}

TEST_F(CaseSettingsDialog, GreysOkOnlyAtTheNextRefreshAfterTheDatasetChanged) {
  MemoryWindow window = Open();
  window.SetText(kFileName, "/cases/b.afi");
  window.Choose(kDowntime, 1);
  EXPECT_EQ(window.Enabled({kOkButton, kCalculate}), "11") << "no cause of a refresh";
  window.Choose(kIPRModel, 0);
  EXPECT_EQ(window.Enabled({kOkButton, kCalculate}), "00");
  window.SetText(kFileName, "/cases/a.afi");
  window.Choose(kComputer, 1);
  EXPECT_EQ(window.Enabled({kOkButton, kHeadNode}), "11");
  window.SetText(kFileName, "/cases/b.afi");
  window.Press(kStartStop);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_TRUE(dialog->StartRequested());
  EXPECT_EQ(model.settings.FileName, "/cases/b.afi");
}

TEST_F(CaseSettingsDialog, CorrectsNumbersWithoutAWord) {
  const std::map<std::string, std::string> stored = {
      {"0|0", "1|1|0"}, {"port|600", "1|512|0"}, {"-3|many", "1|1|0"}, {"9|512", "9|512|0"}};
  for (const auto& [typed, expected] : stored) {
    model.settings.LinuxIXVersion = 31337;  // not on the list: shown as the first
    MemoryWindow window = Open();
    const size_t bar = typed.find('|');
    window.Type({{kHeadNodePort, typed.substr(0, bar)}, {kParallel, typed.substr(bar + 1)}});
    window.Press(kOkButton);
    EXPECT_EQ(Open().Values({kHeadNodePort, kParallel, kLinuxVersion}), expected) << typed;
    EXPECT_EQ(model.settings.LinuxIXVersion, 100000);
    EXPECT_TRUE(window.messages.empty());
  }
}

TEST_F(CaseSettingsDialog, TakesAtOnceWhatIsPickedAndRestoresEverythingWithCancel) {
  const std::string before = Held();
  MemoryWindow window = Open();
  window.Choose(kComputer, 1);
  window.pickedFile = "/other";
  window.Press(kBrowseSimulator);
  EXPECT_EQ(model.settings.SimExeName, "/ix") << "greyed on a cluster";
  window.Choose(kComputer, 0);
  window.Choose(kIPRModel, 0);
  window.Press(kBrowseSimulator);
  window.Press(kBrowseDataset);
  EXPECT_TRUE(window.At(kFileName).isCaretBehindText);
  for (const int button : {kOkButton, kCancelButton}) {
    window.inNested = [button](MemoryWindow& nested) {
      nested.SetChecked(advanced_id::kStdLogging, !nested.IsChecked(advanced_id::kStdLogging));
      nested.Press(button);
    };
    window.Press(kAdvanced);
    EXPECT_TRUE(model.settings.StdLogging) << "and left so by a second thought";
  }
  model.wells.Items.back().OpMode = 1;
  EXPECT_EQ(Held(), "0||7777|0|/other|/other|1|0|0|0|1");
  window.Press(kCancelButton);
  EXPECT_EQ(window.result, kCancelButton);
  EXPECT_EQ(Held(), before);
  EXPECT_FALSE(model.settings.StdLogging);
}

TEST_F(CaseSettingsDialog, AsksForFilesInTheFolderOfTheOldOneOrOfTheDataset) {
  struct Row {
    int button;
    const char *dataset, *simulator, *folder, *extension, *filters;
  };
  constexpr const char* kDatasets = "IX dataset file (*.afi)|*.afi|All files (*.*)|*.*||";
  constexpr const char* kPrograms = "IX executable file (*.exe)|*.exe|All files (*.*)|*.*||";
  for (const Row& row : {Row{kBrowseDataset, "cases/a", "", "cases", "afi", kDatasets},
                         {kBrowseDataset, "a", "bin/ix", "", "afi", kDatasets},
                         {kBrowseSimulator, "cases/a", "ix", "cases", "exe", kPrograms},
                         {kBrowseSimulator, "cases/a", "bin/ix", "bin", "exe", kPrograms}}) {
    MemoryWindow window = Open();
    window.Type({{kFileName, row.dataset}, {kSimExeName, row.simulator}});
    window.Press(row.button);
    EXPECT_EQ(window.fileRequest->folder, row.folder);
    EXPECT_STREQ(window.fileRequest->defaultExtension, row.extension);
    EXPECT_STREQ(window.fileRequest->filters, row.filters);
    EXPECT_EQ(window.Text(kFileName), row.dataset) << "nothing was picked";
    EXPECT_EQ(model.settings.FileName, "/cases/a.afi");
  }
}

TEST_F(CaseSettingsDialog, WaitsForAStopForTwentySeconds) {
  struct Row {
    int32_t closeResult;
    int testsUntilStopped;
    size_t seconds;
    bool isStopped;
  };
  for (const Row& row : {Row{0, 0, 0, true},
                         {0, 3, 3, true},
                         {0, 20, 20, true},
                         {0, 21, 20, false},
                         {1, 0, 0, false}}) {
    model.isRunning = true;
    model.closeCalls = 0;
    model.closeResult = row.closeResult;
    model.testsUntilStopped = row.testsUntilStopped;
    MemoryWindow window = Open();
    window.Choose(kComputer, 1);
    window.SetText(kFileName, "/cases/b.afi");
    window.Press(kStartStop);
    EXPECT_EQ(window.pauses, std::vector<int>(row.seconds, 1000));
    EXPECT_TRUE(window.wasWaitingInPauses);
    EXPECT_FALSE(window.isWaiting);
    EXPECT_EQ(window.result, row.isStopped ? std::nullopt : std::optional<int>(kCancelButton));
    EXPECT_EQ(window.Values({kStartStop}), row.isStopped ? "Start" : "Stop") << "refreshed";
    EXPECT_EQ(window.Enabled({kOkButton}), row.isStopped ? "0" : "1");
    EXPECT_EQ(model.settings.ConnectionMode, row.isStopped ? 1 : 0) << "restored";
    EXPECT_FALSE(dialog->StartRequested());
    model.settings.ConnectionMode = 0;
  }
}

TEST_F(CaseSettingsDialog, CalculatesOverItsOwnWindowAndStopsTheSimulatorAfterwards) {
  MemoryWindow window = Open();
  window.Press(kCalculate);
  EXPECT_EQ(model.setUpOver, &window);
  EXPECT_EQ(model.closeCalls, 1);
  model.wells.Items.clear();
  window.Press(kCalculate);
  EXPECT_EQ(model.closeCalls, 1) << "nothing without wells";
  EXPECT_FALSE(window.result);
}

TEST_F(CaseSettingsDialog, OpensTheConfigurationAndTheHelpOrTellsThatItIsMissing) {
  MemoryWindow window = Open();
  window.inNested = [](MemoryWindow& nested) {
    nested.SetText(configure_id::kSimExecutable, "/new");
    nested.Press(kOkButton);
  };
  window.Press(kConfiguration);
  EXPECT_EQ(config.SimExecutable, "/new");
  EXPECT_EQ(window.Text(kDefaultSimulator), "") << "until the dialog is opened again";
  window.Press(kHelp);
  EXPECT_EQ(window.helpTopic, 13930u);
  EXPECT_TRUE(window.messages.empty());
  window.hasHelp = false;
  window.Press(kHelp);
  ASSERT_EQ(window.messages.size(), 1u);
  EXPECT_NE(window.messages[0].find("Tessel.chm"), std::string::npos);
}

}  // namespace
}  // namespace gantry::test
