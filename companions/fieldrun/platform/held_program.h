#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gantry::fieldrun {

/// How a program ended, like "with status 1". A crash is an end that the system has made.
struct HeldEnd {
  std::string how;
  bool isCrash = false;
};

struct HeldStart {
  std::string program;  ///< a path, or a name that the system looks for among its programs
  std::vector<std::string> arguments;
  std::string folder;  ///< its current one
  std::string log;     ///< the file that takes what it says
};

/// A program that was started on trial: it is ended by force with the object, and what it has
/// started on Windows too. It reads nothing, and no terminal's signals reach it.
class HeldProgram {
 public:
  virtual ~HeldProgram() = default;

  /// None when it still runs after so long.
  virtual std::optional<HeldEnd> WaitForEnd(std::chrono::milliseconds limit) = 0;

  /// Throws runtime_error when it couldn't be started.
  static std::unique_ptr<HeldProgram> Start(const HeldStart& start);
};

}  // namespace gantry::fieldrun
