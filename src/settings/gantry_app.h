#pragma once

#include "settings/link_settings.h"
#include "settings/machine_config.h"

namespace gantry {

/// The module's application object: one for all models, made when the module is loaded and
/// destroyed when it is unloaded, which saves the configuration.
class CGantryApp {
 public:
  CGantryApp();
  ~CGantryApp();

  /// The one object; there must be one.
  static CGantryApp& Instance();

  LinkSettings Settings;
  CIXConfig Config;
};

}  // namespace gantry
