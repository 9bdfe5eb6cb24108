#include "inflowcalc/callers_file.h"

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace gantry::inflow {
namespace {

/// Moves all bytes by calls of `read` or `write`, which may move fewer at a time.
template <class Byte, class Call>
bool MoveAll(std::span<Byte> bytes, Call call) {
  while (!bytes.empty()) {
    const ssize_t moved = call(bytes.data(), bytes.size());
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) return false;
    bytes = bytes.subspan(static_cast<size_t>(moved));
  }
  return true;
}

int Descriptor(intptr_t handle) { return static_cast<int>(handle); }

}  // namespace

bool CallersFile::Write(std::span<const std::byte> bytes) const {
  return MoveAll(bytes, [this](const std::byte* from, size_t length) {
    return ::write(Descriptor(handle_), from, length);
  });
}

bool CallersFile::Read(std::span<std::byte> bytes) const {
  return MoveAll(bytes, [this](std::byte* to, size_t length) {
    return ::read(Descriptor(handle_), to, length);
  });
}

int64_t CallersFile::Position() const { return ::lseek(Descriptor(handle_), 0, SEEK_CUR); }

void CallersFile::MoveTo(int64_t position) const {
  ::lseek(Descriptor(handle_), position, SEEK_SET);
}

int64_t CallersFile::Length() const {
  struct stat status = {};
  return ::fstat(Descriptor(handle_), &status) == 0 ? status.st_size : -1;
}

}  // namespace gantry::inflow
