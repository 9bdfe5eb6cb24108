#pragma once

#include <memory>
#include <string>

namespace gantry::test {

/// A display of the test's own, without a screen; it ends with the object. Put into the environment
/// of this process.
class PrivateDisplay {
 public:
  ~PrivateDisplay();
  PrivateDisplay(const PrivateDisplay&) = delete;
  PrivateDisplay& operator=(const PrivateDisplay&) = delete;

  /// Null, with the reason, where there can be none.
  static std::unique_ptr<PrivateDisplay> Start(std::string& reason);
  /// Takes the display away from whoever uses it.
  void End();

 private:
  explicit PrivateDisplay(int process) : process_(process) {}

  int process_;
};

}  // namespace gantry::test
