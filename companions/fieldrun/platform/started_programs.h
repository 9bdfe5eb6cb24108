#pragma once

#include <memory>
#include <optional>
#include <string>

namespace gantry::fieldrun {

/// The programs that this process starts in the life of the object, also those that the module
/// starts and gives away. Asked from one thread at a time.
class StartedPrograms {
 public:
  virtual ~StartedPrograms() = default;

  /// How the last of them ended, like "with status 1", once one was started and none lives any
  /// more. None before, and where the system can't tell.
  virtual std::optional<std::string> End() = 0;

  static std::unique_ptr<StartedPrograms> Watch();
};

}  // namespace gantry::fieldrun
