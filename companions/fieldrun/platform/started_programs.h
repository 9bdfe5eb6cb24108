#pragma once

#include <memory>
#include <optional>
#include <string>

namespace gantry::fieldrun {

/// How a program ended, like "with status 1".
struct ProgramEnd {
  std::string how;
  bool isFailure = false;  ///< false also where the system can't tell
};

/// The programs that this process starts in the life of the object, also those that the module
/// starts and gives away. Asked from one thread at a time.
class StartedPrograms {
 public:
  virtual ~StartedPrograms() = default;

  /// How the last of them ended, once one was started and none lives any more. None before.
  virtual std::optional<ProgramEnd> End() = 0;

  static std::unique_ptr<StartedPrograms> Watch();
};

}  // namespace gantry::fieldrun
