#include "ui/advanced_settings_dlg.h"

namespace gantry {

using advanced_id::kStdLogging;
using platform::DialogWindow;

void CIXAdvancedSettings::OnOpen(DialogWindow& window) {
  window.SetChecked(kStdLogging, settings_.StdLogging);
}

void CIXAdvancedSettings::OnButton(DialogWindow& window, int id) {
  if (id != platform::kOkButton && id != platform::kCancelButton) return;
  if (id == platform::kOkButton) settings_.StdLogging = window.IsChecked(kStdLogging);
  window.Close(id);
}

}  // namespace gantry
