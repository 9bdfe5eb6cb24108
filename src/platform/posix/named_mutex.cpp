#include "platform/named_mutex.h"

#include "platform/posix/locked_file.h"
#include "platform/posix/user_folders.h"

namespace gantry::platform {

namespace {

/// The mutex's name as a file name: letters, digits, "_" and "-" stand for themselves, every other
/// byte is written as "%" and two digits, so that no name leads out of the folder and no two meet.
std::string FileNameOf(const std::string& name) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string file;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
        c == '-') {
      file += c;
    } else {
      file += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return file + ".lock";
}

class FileMutex : public NamedMutex {
 public:
  FileMutex(const std::string& path, LockedFile::Wait wait) : file_(path, wait) {}

  const LockedFile& File() const { return file_; }

 private:
  LockedFile file_;
};

std::unique_ptr<FileMutex> Open(const std::string& name, LockedFile::Wait wait) {
  const auto folder = RuntimeFolder();
  if (!folder) return nullptr;
  return std::make_unique<FileMutex>(*folder + "/" + FileNameOf(name), wait);
}

}  // namespace

std::unique_ptr<NamedMutex> NamedMutex::Acquire(const std::string& name) {
  auto mutex = Open(name, LockedFile::Wait::kUntilFree);
  if (mutex == nullptr || !mutex->File().IsHeld()) return nullptr;
  return mutex;
}

NamedMutex::Attempt NamedMutex::TryAcquire(const std::string& name) {
  auto mutex = Open(name, LockedFile::Wait::kNot);
  if (mutex != nullptr && mutex->File().IsHeld()) return {Outcome::kTaken, std::move(mutex)};
  const bool busy = mutex != nullptr && mutex->File().IsBusy();
  return {busy ? Outcome::kHeldElsewhere : Outcome::kUnavailable, nullptr};
}

}  // namespace gantry::platform
