#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"

namespace gantry::fieldrun {

/// What to ask of the module between the steps of a run. Each line of the file is
///   STEP get PATH
///   STEP set PATH VALUE
///   STEP do COMMAND
/// where STEP is the number of a step, before which the line is done, or "*" for every step. Empty
/// lines and what follows a "#" at the start of a line are passed over.
class RunScript {
 public:
  /// Throws CaseError, with the line at fault.
  static RunScript Read(const std::string& path);

  /// Does the lines of a step, in the order of the file; answers go to `output`. Throws
  /// DriverFailure, at the first that fails.
  void RunStep(size_t step, DriverModel& model, std::FILE* output) const;

 private:
  enum class Action { kGet, kSet, kDo };
  struct Line {
    size_t step = 0;  ///< from 1; 0 for every step
    Action action = Action::kGet;
    std::string subject;  ///< a path, or a command
    std::string value;
  };

  static Line Parse(const std::string& text, const std::string& file, int number);

  std::vector<Line> lines_;
};

}  // namespace gantry::fieldrun
