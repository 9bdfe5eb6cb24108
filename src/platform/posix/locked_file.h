#pragma once

#include <string>

#include "platform/posix/descriptor.h"

namespace gantry::platform {

/// A file locked by `flock` for the life of the object. The lock dies with the process, and two
/// objects shut each other out within one process too. The file itself stays.
class LockedFile {
 public:
  enum class Wait { kUntilFree, kNot };

  LockedFile(const std::string& path, Wait wait);
  ~LockedFile();
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;

  bool IsHeld() const { return held_; }
  /// True when the lock isn't held because somebody else has it.
  bool IsBusy() const { return busy_; }

 private:
  Descriptor file_;
  bool held_ = false;
  bool busy_ = false;
};

}  // namespace gantry::platform
