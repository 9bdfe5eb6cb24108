#include "platform/posix/locked_file.h"

#include <fcntl.h>
#include <sys/file.h>

namespace gantry::platform {

LockedFile::LockedFile(const std::string& path)
    : file_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600)) {
  if (!file_.IsOpen()) return;
  held_ = WithoutInterrupts([this] { return ::flock(file_.Number(), LOCK_EX); }) == 0;
}

LockedFile::~LockedFile() {
  // Closing isn't enough: a process forked meanwhile may still have the descriptor.
  if (held_) ::flock(file_.Number(), LOCK_UN);
}

}  // namespace gantry::platform
