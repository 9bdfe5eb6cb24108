#pragma once

#include <cstdint>

namespace gantry {

class CExportedVariables;
class LinkSettings;
class StaticWellDataCollection;

/// What the case settings dialog works on: a model's settings and wells, and its simulator.
class EditedCase {
 public:
  virtual ~EditedCase() = default;

  virtual LinkSettings& Settings() = 0;
  virtual StaticWellDataCollection& Wells() = 0;
  virtual bool IsRunning() = 0;
  /// 0, or another number when it failed.
  virtual int32_t CloseSimulator() = 0;
  /// The inflow library's own settings, over a window.
  virtual void SetUpInflow(void* window) = 0;
};

/// The dialogs that a model opens, each modal over a window of the host.
class ModelDialogs {
 public:
  virtual ~ModelDialogs() = default;

  /// The case settings; true when the user goes on with a run.
  virtual bool EditCase(void* parent, EditedCase& edited) = 0;
  /// The choice of exported variables; true when it was accepted.
  virtual bool EditExportedVariables(void* parent, CExportedVariables& variables,
                                     const StaticWellDataCollection& wells, bool hasComponents) = 0;
  /// The picture of the simulator on the host's schematic, stretched over the window.
  virtual void DrawIcon(void* window, void* deviceContext) = 0;
};

/// The dialogs over a window; null where none can be shown.
using DialogsOver = ModelDialogs* (*)(void* window);

}  // namespace gantry
