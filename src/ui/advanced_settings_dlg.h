#pragma once

#include "settings/link_settings.h"
#include "toolkit/dialog_window.h"
#include "ui/dialog_templates.h"

namespace gantry {

/// "Advanced settings": the one setting of a case that few need.
class CIXAdvancedSettings : public platform::DialogHandler {
 public:
  explicit CIXAdvancedSettings(LinkSettings& settings)
      : DialogHandler(kAdvancedTemplate), settings_(settings) {}

  void OnOpen(platform::DialogWindow& window) override;
  void OnButton(platform::DialogWindow& window, int id) override;

 private:
  LinkSettings& settings_;
};

}  // namespace gantry
