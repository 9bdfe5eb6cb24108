#pragma once

#include "settings/machine_config.h"
#include "toolkit/dialog_window.h"
#include "ui/dialog_templates.h"

namespace gantry {

/// "Configure": edits the machine's configuration in place. The texts and ports are taken with
/// "OK"; what "Add" and "Delete" do to the exposed properties holds at once and survives "Cancel".
/// The registry is left to the configuration's own end.
class CConfigureDlg : public platform::DialogHandler {
 public:
  explicit CConfigureDlg(CIXConfig& config) : DialogHandler(kConfigureTemplate), config_(config) {}

  void OnOpen(platform::DialogWindow& window) override;
  void OnButton(platform::DialogWindow& window, int id) override;

 private:
  /// From the one at `first` on, behind those that are listed.
  void ListProperties(platform::DialogWindow& window, size_t first) const;
  void DeleteSelected(platform::DialogWindow& window);
  void AddProperty(platform::DialogWindow& window);
  void Accept(platform::DialogWindow& window);

  CIXConfig& config_;
};

/// Ports as the user entered them, made fit to use; no word is said about a correction.
void CorrectPorts(int32_t& startPort, int32_t& endPort);

}  // namespace gantry
