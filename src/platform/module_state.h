#pragma once

namespace gantry::platform {

/// Makes the module's own framework state current for the calling thread, and restores the earlier
/// state on every way out. Every exported entry but `ExtCreateUnit` holds one for its whole length.
class ModuleStateScope {
 public:
  ModuleStateScope();
  ~ModuleStateScope();
  ModuleStateScope(const ModuleStateScope&) = delete;
  ModuleStateScope& operator=(const ModuleStateScope&) = delete;

  /// How many scopes the calling thread is in; 0 outside the module.
  static int Depth();
};

}  // namespace gantry::platform
