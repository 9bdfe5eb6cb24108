#pragma once

#include <string>

#include "platform/posix/descriptor.h"

namespace gantry::platform {

/// A file locked by `flock` for the life of the object. The lock dies with the process, and two
/// objects shut each other out within one process too. The file itself stays.
class LockedFile {
 public:
  /// Waits until the lock is free, without a time limit.
  explicit LockedFile(const std::string& path);
  ~LockedFile();

  bool IsHeld() const { return held_; }

 private:
  Descriptor file_;
  bool held_ = false;
};

}  // namespace gantry::platform
