#include "platform/posix/locked_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace gantry::platform {

LockedFile::LockedFile(const std::string& path, Wait wait)
    : file_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600)) {
  if (!file_.IsOpen()) return;
  const int operation = LOCK_EX | (wait == Wait::kNot ? LOCK_NB : 0);
  int result = 0;
  do {
    result = ::flock(file_.Number(), operation);
  } while (result != 0 && errno == EINTR);
  held_ = result == 0;
  busy_ = result != 0 && errno == EWOULDBLOCK;
}

LockedFile::~LockedFile() {
  // Closing isn't enough: a process forked meanwhile may still have the descriptor.
  if (held_) ::flock(file_.Number(), LOCK_UN);
}

}  // namespace gantry::platform
