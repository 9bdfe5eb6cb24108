#pragma once

#include <stdexcept>

namespace gantry::fieldrun {

/// A run that came to its end by its user's wish; what it says is how far it came.
class EndedByUser : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// From here on a request to end this program is only noted: Ctrl-C, and where the system has them
/// the end of the terminal and the signal of who manages processes. A second Ctrl-C, or a second
/// signal of that kind, ends the program at once. A request that whoever started this program has
/// it ignore stays ignored.
void TakeInterruptions();

/// True once there was such a request.
bool IsInterrupted();

/// What is started in the life of this object never hears the terminal's Ctrl-C. On Windows this
/// program doesn't hear it either meanwhile; there is at most one such object.
class DeafToInterruptions {
 public:
  DeafToInterruptions();
  ~DeafToInterruptions();
  DeafToInterruptions(const DeafToInterruptions&) = delete;
  DeafToInterruptions& operator=(const DeafToInterruptions&) = delete;
};

}  // namespace gantry::fieldrun
