#pragma once

namespace gantry {

class CExtModel;

/// The dialogs through which a user works on the module, as the host opens them: each is shown
/// modally over a window of the host and returns when it is closed. One implementation exists for
/// each toolkit; the rest of the driver knows only this.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  /// The machine's configuration.
  virtual void Configure(void* parent) = 0;
  /// The case settings; true when the dialog ended accepted.
  virtual bool EditCase(void* parent, CExtModel& model) = 0;
  /// The choice of exported variables; true when the dialog ended accepted.
  virtual bool EditExportedVariables(void* parent, CExtModel& model) = 0;
  /// The picture of the simulator on the host's schematic, stretched over the window.
  virtual void DrawIcon(void* window, void* deviceContext) = 0;
};

/// The dialogs over `parent`. Null when that is no window, or when there are no dialogs here: both
/// mean that nothing can be shown.
Dialogs* DialogsFor(void* parent);

}  // namespace gantry
