#include "ui/configure_dlg.h"

#include <utility>

#include "client/unit_converter.h"
#include "text/number_text.h"
#include "ui/add_property_dlg.h"
#include "ui/browse.h"
#include "ui/button_actions.h"

namespace gantry {

using platform::DialogWindow;

namespace {

constexpr int32_t kFirstBadPort = 65001;
constexpr int32_t kDefaultStartPort = 9001;
constexpr int32_t kDefaultEndPort = 9101;
constexpr int32_t kPortRange = 100;

const platform::FileRequest kSimulatorFile{"exe", "IX executable file (*.exe)|*.exe|"};
const platform::FileRequest kMpiFile{"exe", "MPI executable file - mpiexec (*.exe)|*.exe|"};

bool IsUsablePort(int32_t port) { return port != 0 && port < kFirstBadPort; }

}  // namespace

void CorrectPorts(int32_t& startPort, int32_t& endPort) {
  if (!IsUsablePort(startPort)) startPort = kDefaultStartPort;
  if (!IsUsablePort(endPort)) endPort = kDefaultEndPort;
  if (endPort < startPort) endPort = startPort + kPortRange;
}

void CConfigureDlg::OnOpen(DialogWindow& window) {
  using namespace configure_id;
  window.SetText(kSimExecutable, config_.SimExecutable);
  window.SetText(kMPIExecutable, config_.MPIExecutable);
  window.SetText(kCmdLine, config_.CmdLine);
  window.SetText(kStartPort, FormatInteger(config_.StartPort));
  window.SetText(kEndPort, FormatInteger(config_.EndPort));
  window.SetColumns(kProperties, {{"IX property", 180}, {"Display name", 180}, {"Unit", 110}});
  ListProperties(window, 0);
}

// "Help" has nothing to show.
void CConfigureDlg::OnButton(DialogWindow& window, int id) {
  using namespace configure_id;
  Press(id, {{kBrowseSimulator, [&] { BrowseInto(window, kSimExecutable, kSimulatorFile); }},
             {kBrowseMpi, [&] { BrowseInto(window, kMPIExecutable, kMpiFile); }},
             {kDelete, [&] { DeleteSelected(window); }},
             {kAdd, [&] { AddProperty(window); }},
             {platform::kOkButton, [&] { Accept(window); }},
             {platform::kCancelButton, [&] { window.Close(platform::kCancelButton); }}});
}

void CConfigureDlg::ListProperties(DialogWindow& window, size_t first) const {
  std::vector<std::vector<std::string>> rows;
  for (size_t i = first; i < config_.UserProperties.size(); ++i) {
    const CIXUserProperty& property = *config_.UserProperties[i];
    rows.push_back({property.Property, property.DisplayName, UnitFamilyName(property.UnitFamily)});
  }
  window.AddRows(configure_id::kProperties, rows, platform::kVariablePicture);
}

void CConfigureDlg::DeleteSelected(DialogWindow& window) {
  auto& properties = config_.UserProperties;
  const std::vector<size_t> selected = window.SelectedRows(configure_id::kProperties);
  for (const size_t row : selected) properties[row].reset();
  std::erase(properties, nullptr);
  window.RemoveRows(configure_id::kProperties, selected);
}

void CConfigureDlg::AddProperty(DialogWindow& window) {
  CAddProperty dialog(config_);
  const size_t listed = config_.UserProperties.size();
  if (window.RunDialog(dialog) == platform::kOkButton) ListProperties(window, listed);
}

void CConfigureDlg::Accept(DialogWindow& window) {
  using namespace configure_id;
  // All is read before any of it is taken: a window can be lost in between.
  LaunchSettings entered = {window.Text(kSimExecutable), window.Text(kMPIExecutable),
                            window.Text(kCmdLine), ReadInteger(window.Text(kStartPort)),
                            ReadInteger(window.Text(kEndPort))};
  CorrectPorts(entered.StartPort, entered.EndPort);
  config_.SetForLaunch(std::move(entered));
  window.Close(platform::kOkButton);
}

}  // namespace gantry
