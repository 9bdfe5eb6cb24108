#pragma once

#include "model/model_dialogs.h"
#include "toolkit/dialog_window.h"

namespace gantry {

/// The dialogs through which a user works on the module, as the host opens them: each is shown
/// modally over a window of the host and returns when it is closed.
class Dialogs : public ModelDialogs {
 public:
  explicit Dialogs(platform::DialogToolkit& toolkit) : toolkit_(toolkit) {}

  /// The machine's configuration.
  void Configure(void* parent);
  bool EditCase(void* parent, EditedCase& edited) override;
  bool EditExportedVariables(void* parent, CExportedVariables& variables,
                             const StaticWellDataCollection& wells, bool hasComponents) override;
  void DrawIcon(void* window, void* deviceContext) override;

 private:
  platform::DialogToolkit& toolkit_;
};

/// The dialogs over `parent`. Null when that is no window, or when there are no dialogs here: both
/// mean that nothing can be shown.
Dialogs* DialogsFor(void* parent);
/// The same, for a model.
inline ModelDialogs* ModelDialogsFor(void* parent) { return DialogsFor(parent); }

}  // namespace gantry
