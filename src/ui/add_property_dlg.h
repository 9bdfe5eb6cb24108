#pragma once

#include "settings/machine_config.h"
#include "toolkit/dialog_window.h"
#include "ui/dialog_templates.h"

namespace gantry {

/// "Add property": appends one exposed well property to the configuration with "OK", at once.
class CAddProperty : public platform::DialogHandler {
 public:
  explicit CAddProperty(CIXConfig& config) : DialogHandler(kAddPropertyTemplate), config_(config) {}

  void OnOpen(platform::DialogWindow& window) override;
  void OnButton(platform::DialogWindow& window, int id) override;

 private:
  void Accept(platform::DialogWindow& window);

  CIXConfig& config_;
};

}  // namespace gantry
