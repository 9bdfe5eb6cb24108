#include "ui/case_settings_dlg.h"

#include <sstream>

#include <gtest/gtest.h>

#include "support/test_folder.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"
#include "ui/stub_case.h"

namespace gantry {
namespace {

using namespace case_settings_id;
using platform::kCancelButton;
using platform::kOkButton;
using test::MemoryWindow;

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
  /// What a case holds, in the order of the dialog.
  std::string Fields() const {
    const LinkSettings& held = model.settings;
    std::ostringstream out;
    out << held.ConnectionMode << '|' << held.HeadNode << '|' << held.HeadNodePort << '|'
        << held.LinuxIXVersion << '|' << held.SimExeName << '|' << held.FileName << '|'
        << held.Parallel << '|' << held.IPRModel << '|' << held.CloseUnconnectedWells << '|'
        << held.UpTimeMode << '|' << held.StdLogging;
    return out.str();
  }
  /// The controls of these fields, and the one of the wells' mode in place of the last.
  static std::string Shown(const MemoryWindow& window) {
    std::string shown;
    for (const int id : {kComputer, kHeadNode, kHeadNodePort, kLinuxVersion, kSimExeName, kFileName,
                         kParallel, kIPRModel, kCloseUnconnected, kDowntime, kControlMode}) {
      shown += window.Value(id) + (id == kControlMode ? "" : "|");
    }
    return shown;
  }

  test::TestFolder folder;
  CIXConfig config;
  test::StubCase model;
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
  for (const auto& [id, text] : std::map<int, const char*>{
           {kHeadNode, "node"}, {kHeadNodePort, "8000"}, {kSimExeName, "/ix2"}, {kParallel, "4"}}) {
    window.SetText(id, text);
  }
  for (const auto& [id, index] :
       std::map<int, int>{{kLinuxVersion, 1}, {kIPRModel, 0}, {kControlMode, 1}, {kDowntime, 0}}) {
    window.Choose(id, index);
  }
  window.SetChecked(kCloseUnconnected, true);
  window.Press(kOkButton);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_FALSE(dialog->StartRequested());
  EXPECT_EQ(Fields(), "1|node|8000|20162|/ix2|/cases/a.afi|4|0|1|0|0");
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
    std::string enabled;
    for (const int id :
         std::initializer_list<int>{kHeadNode, kHeadNodePort, kLinuxVersion, kBrowseDataset,
                                    kBrowseSimulator, kCalculate, kOkButton}) {
      enabled += window.At(id).isEnabled ? "1" : "0";
    }
    EXPECT_EQ(enabled, row.enabled);
    EXPECT_EQ(window.Text(kStartStop), row.isRunning ? "Stop" : "Start");
  }
}

TEST_F(CaseSettingsDialog, GreysOkOnlyAtTheNextRefreshAfterTheDatasetChanged) {
  MemoryWindow window = Open();
  window.SetText(kFileName, "/cases/b.afi");
  window.Choose(kDowntime, 1);
  EXPECT_TRUE(window.At(kOkButton).isEnabled) << "no cause of a refresh";
  window.Choose(kIPRModel, 0);
  EXPECT_FALSE(window.At(kOkButton).isEnabled);
  EXPECT_FALSE(window.At(kCalculate).isEnabled);
  window.SetText(kFileName, "/cases/a.afi");
  window.Choose(kComputer, 1);
  EXPECT_TRUE(window.At(kOkButton).isEnabled);
  EXPECT_TRUE(window.At(kHeadNode).isEnabled);
  window.SetText(kFileName, "/cases/b.afi");
  window.Press(kStartStop);
  EXPECT_EQ(window.result, kOkButton);
  EXPECT_TRUE(dialog->StartRequested());
  EXPECT_EQ(model.settings.FileName, "/cases/b.afi");
}

TEST_F(CaseSettingsDialog, CorrectsNumbersWithoutAWord) {
  struct Row {
    const char *port, *parallel;
    int32_t storedPort, storedParallel;
  };
  for (const Row& row :
       {Row{"0", "0", 1, 1}, {"port", "600", 1, 512}, {"-3", "many", 1, 1}, {"9", "512", 9, 512}}) {
    model.settings.LinuxIXVersion = 31337;  // not on the list: shown as the first
    MemoryWindow window = Open();
    EXPECT_EQ(window.Selection(kLinuxVersion), 0);
    window.SetText(kHeadNodePort, row.port);
    window.SetText(kParallel, row.parallel);
    window.Press(kOkButton);
    EXPECT_EQ(model.settings.HeadNodePort, row.storedPort);
    EXPECT_EQ(model.settings.Parallel, row.storedParallel);
    EXPECT_EQ(model.settings.LinuxIXVersion, 100000);
    EXPECT_TRUE(window.messages.empty());
  }
}

TEST_F(CaseSettingsDialog, TakesAtOnceWhatIsPickedAndRestoresEverythingWithCancel) {
  MemoryWindow window = Open();
  window.Choose(kComputer, 1);
  window.pickedFile = "/other";
  window.Press(kBrowseSimulator);
  EXPECT_EQ(model.settings.SimExeName, "/ix") << "greyed on a cluster";
  window.Choose(kComputer, 0);
  window.Choose(kIPRModel, 0);
  window.Press(kBrowseSimulator);
  window.Press(kBrowseDataset);
  window.inNested = [](MemoryWindow& nested) {
    nested.SetChecked(advanced_id::kStdLogging, true);
    nested.Press(kOkButton);
  };
  window.Press(kAdvanced);
  EXPECT_EQ(Fields(), "0||7777|100000|/other|/other|1|0|0|0|1");
  EXPECT_TRUE(window.At(kFileName).isCaretBehindText);
  window.inNested = [](MemoryWindow& nested) {
    EXPECT_TRUE(nested.IsChecked(advanced_id::kStdLogging));
    nested.SetChecked(advanced_id::kStdLogging, false);
    nested.Press(kCancelButton);
  };
  window.Press(kAdvanced);
  EXPECT_TRUE(model.settings.StdLogging) << "given up";
  model.wells.Items[0].OpMode = 1;
  window.Press(kCancelButton);
  EXPECT_EQ(window.result, kCancelButton);
  EXPECT_EQ(Fields(), "0||7777|100000|/ix|/cases/a.afi|1|1|0|0|0");
  EXPECT_EQ(model.wells.Items[0].OpMode, 3);
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
    window.SetText(kFileName, row.dataset);
    window.SetText(kSimExeName, row.simulator);
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
    EXPECT_EQ(window.Text(kStartStop), row.isStopped ? "Start" : "Stop");
    EXPECT_EQ(window.At(kOkButton).isEnabled, !row.isStopped) << "refreshed";
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
}  // namespace gantry
