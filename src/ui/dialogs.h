#pragma once

#include "toolkit/dialog_window.h"

namespace gantry {

class CExtModel;

/// The dialogs through which a user works on the module, as the host opens them: each is shown
/// modally over a window of the host and returns when it is closed.
class Dialogs {
 public:
  explicit Dialogs(platform::DialogToolkit& toolkit) : toolkit_(toolkit) {}

  /// The machine's configuration.
  void Configure(void* parent);
  /// The case settings; true when the user goes on with a run.
  bool EditCase(void* parent, CExtModel& model);
  /// The choice of exported variables; true when it was accepted.
  bool EditExportedVariables(void* parent, CExtModel& model);
  /// The picture of the simulator on the host's schematic, stretched over the window.
  void DrawIcon(void* window, void* deviceContext);

 private:
  platform::DialogToolkit& toolkit_;
};

/// The dialogs over `parent`. Null when that is no window, or when there are no dialogs here: both
/// mean that nothing can be shown.
Dialogs* DialogsFor(void* parent);

}  // namespace gantry
