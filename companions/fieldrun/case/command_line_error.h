#pragma once

#include <stdexcept>

namespace gantry::fieldrun {

/// A command line that can't be obeyed, for a reason that shows only beside the case or the module.
class CommandLineError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

}  // namespace gantry::fieldrun
