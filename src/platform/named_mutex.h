#pragma once

#include <memory>
#include <string>

namespace gantry::platform {

/// A lock with a name that all processes of this machine share, whoever's they are: on POSIX those
/// of one network namespace, which have their ports in common too. It is held for the life of the
/// object, and the system frees it when the holder dies.
class NamedMutex {
 public:
  virtual ~NamedMutex() = default;

  /// Takes the lock, waiting without a time limit. Null only when the system can't make it. On
  /// Windows it waits for those of its own session alone.
  static std::unique_ptr<NamedMutex> Acquire(const std::string& name);

  enum class Outcome { kTaken, kHeldElsewhere, kUnavailable };
  struct Attempt {
    Outcome outcome;
    std::unique_ptr<NamedMutex> mutex;  ///< set when `outcome` is kTaken
    std::string reason;                 ///< the system's text when it is kUnavailable
  };
  /// Takes the lock if nobody has it, this process included; never waits.
  static Attempt TryAcquire(const std::string& name);
};

}  // namespace gantry::platform
