#pragma once

#include <stdexcept>

namespace gantry::flowlink {

/// Why a run can't begin or go on, in words for the controller's user.
class LinkFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace gantry::flowlink
