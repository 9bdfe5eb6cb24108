#include "ui/case_settings_dlg.h"

#include <algorithm>
#include <array>

#include "text/number_text.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/browse.h"
#include "ui/button_actions.h"
#include "ui/configure_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/help.h"

namespace gantry {

using namespace case_settings_id;
using platform::DialogWindow;

namespace {

constexpr uint32_t kHelpTopic = 13930;
constexpr int kStopTests = 20;
constexpr int kStopTestMilliseconds = 1000;

/// The simulator versions on a cluster that can be chosen.
struct LinuxVersion {
  const char* caption;
  int32_t value;
};
constexpr std::array<LinuxVersion, 3> kLinuxVersions = {
    {{"Most recent", 100000}, {"2016.2", 20162}, {"2017.2->", 20172}}};

const platform::FileRequest kDatasetFile{"afi",
                                         "IX dataset file (*.afi)|*.afi|All files (*.*)|*.*||"};
const platform::FileRequest kSimulatorFile{
    "exe", "IX executable file (*.exe)|*.exe|All files (*.*)|*.*||"};

int VersionIndex(int32_t version) {
  const auto found = std::ranges::find(kLinuxVersions, version, &LinuxVersion::value);
  return found == kLinuxVersions.end() ? 0 : static_cast<int>(found - kLinuxVersions.begin());
}

}  // namespace

CCaseSettingsDlg::CCaseSettingsDlg(EditedCase& model, CIXConfig& config)
    : DialogHandler(kCaseSettingsTemplate),
      model_(model),
      config_(config),
      live_(model.Settings()),
      saved_(live_),
      liveWells_(model.Wells()),
      savedWells_(liveWells_),
      openingDataset_(live_.FileName) {}

void CCaseSettingsDlg::OnOpen(DialogWindow& window) {
  startRequested_ = false;
  FillLists(window);
  ShowSettings(window);
  ShowDefaultSimulator(window);
  Refresh(window);
}

void CCaseSettingsDlg::FillLists(DialogWindow& window) const {
  std::vector<std::string> versions;
  versions.reserve(std::size(kLinuxVersions));
  for (const LinuxVersion& version : kLinuxVersions) versions.emplace_back(version.caption);
  window.SetItems(kLinuxVersion, versions);
  window.SetItems(kComputer, {"Local computer", "Linux cluster"});
  window.SetItems(kIPRModel, {"Block pressure", "Drainage region (Orvale)"});
  window.SetItems(kControlMode, {"Rate (dominant phase)", "Combined", "Liquid", "Gas"});
  window.SetItems(kDowntime, {"Pass Halyard -> IX", "Take from IX data"});
}

void CCaseSettingsDlg::ShowSettings(DialogWindow& window) const {
  window.Select(kComputer, live_.ConnectionMode);
  window.SetText(kHeadNode, live_.HeadNode);
  window.SetText(kHeadNodePort, FormatInteger(live_.HeadNodePort));
  window.Select(kLinuxVersion, VersionIndex(live_.LinuxIXVersion));
  window.SetText(kSimExeName, live_.SimExeName);
  window.PutCaretBehindText(kSimExeName);
  window.SetText(kFileName, live_.FileName);
  window.PutCaretBehindText(kFileName);
  window.SetText(kParallel, FormatInteger(live_.Parallel));
  window.Select(kIPRModel, live_.IPRModel);
  window.Select(kControlMode, liveWells_.OpMode());
  window.SetChecked(kCloseUnconnected, live_.CloseUnconnectedWells);
  window.Select(kDowntime, live_.UpTimeMode);
}

void CCaseSettingsDlg::ShowDefaultSimulator(DialogWindow& window) const {
  const std::string& simulator = config_.SimExecutable;
  if (simulator.empty()) return window.SetText(kDefaultSimulator, "");
  window.SetText(kDefaultSimulator, "Blank to use the configured default: " + simulator);
  window.SetToolTip(kDefaultSimulator, simulator);
}

void CCaseSettingsDlg::Refresh(DialogWindow& window) const {
  const bool isRunning = model_.IsRunning();
  for (const int id : {kHeadNode, kHeadNodePort, kLinuxVersion}) {
    window.Enable(id, !isRunning && live_.ConnectionMode == kLinuxCluster);
  }
  for (const int id : {kBrowseDataset, kBrowseSimulator}) {
    window.Enable(id, !isRunning && live_.ConnectionMode == kLocalComputer);
  }
  window.Enable(kCalculate, !isRunning && live_.IPRModel == kDrainageRegion);
  window.Enable(platform::kOkButton, window.Text(kFileName) == openingDataset_);
  window.SetText(kStartStop, isRunning ? "Stop" : "Start");
}

void CCaseSettingsDlg::OnSelection(DialogWindow& window, int id) {
  if (id != kComputer && id != kIPRModel) return;
  (id == kComputer ? live_.ConnectionMode : live_.IPRModel) = window.Selection(id);
  Refresh(window);
}

void CCaseSettingsDlg::OnButton(DialogWindow& window, int id) {
  const auto runOver = [&](DialogHandler&& dialog) { window.RunDialog(dialog); };
  Press(id,
        {{kBrowseDataset, [&] { Browse(window, kFileName, kDatasetFile, live_.FileName); }},
         {kBrowseSimulator, [&] { Browse(window, kSimExeName, kSimulatorFile, live_.SimExeName); }},
         {kConfiguration, [&] { runOver(CConfigureDlg(config_)); }},
         {kAdvanced, [&] { runOver(CIXAdvancedSettings(live_)); }},
         {kCalculate, [&] { Calculate(window); }},
         {kStartStop, [&] { StartOrStop(window); }},
         {kHelp, [&] { ShowHelpTopic(window, kHelpTopic); }},
         {platform::kOkButton, [&] { Accept(window, false); }},
         {platform::kCancelButton, [&] { Cancel(window); }}});
}

void CCaseSettingsDlg::Browse(DialogWindow& window, int edit, const platform::FileRequest& request,
                              std::string& target) const {
  target = BrowseInto(window, edit, request, FolderOf(window.Text(kFileName))).value_or(target);
}

void CCaseSettingsDlg::Save(DialogWindow& window) const {
  liveWells_.SetOpMode(window.Selection(kControlMode));
  live_.SimExeName = window.Text(kSimExeName);
  live_.FileName = window.Text(kFileName);
  live_.HeadNode = window.Text(kHeadNode);
  live_.Parallel = ReadInteger(window.Text(kParallel));
  live_.HeadNodePort = std::max(ReadInteger(window.Text(kHeadNodePort)), 1);
  const auto version = static_cast<size_t>(std::max(window.Selection(kLinuxVersion), 0));
  live_.LinuxIXVersion = kLinuxVersions.at(version).value;
  live_.CloseUnconnectedWells = window.IsChecked(kCloseUnconnected);
  live_.IPRModel = window.Selection(kIPRModel);
  live_.UpTimeMode = window.Selection(kDowntime);
  live_.ClampParallel();
  live_.SaveToRegistry();
}

void CCaseSettingsDlg::Accept(DialogWindow& window, bool isStart) {
  Save(window);
  startRequested_ = isStart;
  window.Close(platform::kOkButton);
}

void CCaseSettingsDlg::Cancel(DialogWindow& window) {
  startRequested_ = false;
  live_ = saved_;
  liveWells_.Items = savedWells_.Items;
  window.Close(platform::kCancelButton);
}

void CCaseSettingsDlg::StartOrStop(DialogWindow& window) {
  if (!model_.IsRunning()) return Accept(window, true);
  if (model_.CloseSimulator() != 0 || !WaitForStop(window)) return Cancel(window);
  Refresh(window);
}

bool CCaseSettingsDlg::WaitForStop(DialogWindow& window) const {
  window.SetWaitCursor(true);
  bool isRunning = model_.IsRunning();
  for (int tests = 0; isRunning && tests < kStopTests; ++tests) {
    window.Pause(kStopTestMilliseconds);
    isRunning = model_.IsRunning();
  }
  window.SetWaitCursor(false);
  return !isRunning;
}

void CCaseSettingsDlg::Calculate(DialogWindow& window) const {
  if (liveWells_.Items.empty()) return;
  model_.SetUpInflow(window.Handle());
  model_.CloseSimulator();
}

}  // namespace gantry
