#include "platform/files.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "platform/aside_file.h"
#include "platform/posix/descriptor.h"

namespace gantry::platform {

const char kPathSeparator = '/';

namespace {

class PosixFile : public NativeFile {
 public:
  explicit PosixFile(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  intptr_t Handle() const override { return descriptor_.Number(); }
  bool Write(const void* bytes, size_t length) override;
  bool Read(void* bytes, size_t length) override;
  uint64_t Remaining() const override;

 private:
  Descriptor descriptor_;
};

bool PosixFile::Write(const void* bytes, size_t length) {
  return MoveAll(static_cast<const char*>(bytes), length, [this](const char* next, size_t left) {
    return ::write(descriptor_.Number(), next, left);
  });
}

bool PosixFile::Read(void* bytes, size_t length) {
  return MoveAll(static_cast<char*>(bytes), length, [this](char* next, size_t left) {
    return ::read(descriptor_.Number(), next, left);
  });
}

uint64_t PosixFile::Remaining() const {
  struct stat status {};
  const off_t position = ::lseek(descriptor_.Number(), 0, SEEK_CUR);
  if (position < 0 || ::fstat(descriptor_.Number(), &status) != 0) {
    return std::numeric_limits<uint64_t>::max();
  }
  return status.st_size > position ? static_cast<uint64_t>(status.st_size - position) : 0;
}

std::optional<struct stat> StatusOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

/// Opened without waiting, so that a pipe without a writer can't hold the caller up.
Descriptor OpenReading(const std::string& path) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0 || S_ISDIR(status.st_mode)) {
    return Descriptor();
  }
  return file;
}

/// Held for as long as a file is being written aside, so that others know it from one left behind.
bool Lock(const Descriptor& file, int how) { return ::flock(file.Number(), LOCK_EX | how) == 0; }

bool HasName(const Descriptor& file) {
  struct stat status {};
  return ::fstat(file.Number(), &status) == 0 && status.st_nlink > 0;
}

/// A new file beside `path`, under a name that nobody has. Between its making and its lock somebody
/// may have taken it for one left behind.
Descriptor CreateBeside(const std::string& path, std::string& name) {
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    name = NewAsideName(path, static_cast<uint32_t>(::getpid()));
    Descriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.IsOpen() && errno != EEXIST) return file;
    if (!file.IsOpen()) continue;
    (void)Lock(file, 0);
    if (HasName(file)) return file;
    ::unlink(name.c_str());  // where only the question has failed
  }
  return Descriptor();
}

/// What processes that were killed have left beside `path`.
void SweepBeside(const std::string& path) {
  for (const AsideFile& aside : FindAsideFiles(path)) {
    const Descriptor file(
        ::open(aside.path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    if (file.IsOpen() && Lock(file, LOCK_NB)) ::unlink(aside.path.c_str());
  }
}

bool CopyContent(const NativeFile& from, NativeFile& to) {
  std::array<char, 65536> piece = {};
  while (true) {
    const ssize_t got = WithoutInterrupts(
        [&] { return ::read(static_cast<int>(from.Handle()), piece.data(), piece.size()); });
    if (got <= 0) return got == 0;
    if (!to.Write(piece.data(), static_cast<size_t>(got))) return false;
  }
}

/// For a file whose folder takes no new ones: the new content waits in memory.
class OverwritingFile : public ReplacementFile {
 public:
  OverwritingFile(Descriptor file, Descriptor target)
      : file_(std::move(file)), target_(std::move(target)) {}

  NativeFile& File() override { return file_; }

 private:
  bool TakePlace() override {
    const off_t length = LengthOf(file_);
    const off_t old = LengthOf(target_);
    const int target = static_cast<int>(target_.Handle());
    if (length > old && ::posix_fallocate(target, old, length - old) != 0) {
      (void)!::ftruncate(target, old);
      return false;
    }
    return ::lseek(static_cast<int>(file_.Handle()), 0, SEEK_SET) == 0 &&
           CopyContent(file_, target_) && ::ftruncate(target, length) == 0 && ::fsync(target) == 0;
  }
  static off_t LengthOf(const PosixFile& file) {
    struct stat status {};
    return ::fstat(static_cast<int>(file.Handle()), &status) == 0 ? status.st_size : 0;
  }

  PosixFile file_;
  PosixFile target_;
};

std::unique_ptr<ReplacementFile> OpenOver(const std::string& path) {
  Descriptor target(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  Descriptor file(target.IsOpen() ? ::memfd_create("replacement", MFD_CLOEXEC) : -1);
  if (!file.IsOpen()) return nullptr;
  return std::make_unique<OverwritingFile>(std::move(file), std::move(target));
}

class PosixReplacement : public ReplacementFile {
 public:
  PosixReplacement(Descriptor file, std::string name, std::string path)
      : file_(std::move(file)), name_(std::move(name)), path_(std::move(path)) {}
  ~PosixReplacement() override {
    if (!IsCommitted()) ::unlink(name_.c_str());
  }

  NativeFile& File() override { return file_; }

 private:
  bool TakePlace() override {
    return ::fsync(static_cast<int>(file_.Handle())) == 0 &&
           ::rename(name_.c_str(), path_.c_str()) == 0;
  }

  PosixFile file_;
  std::string name_;
  std::string path_;
};

}  // namespace

bool CanOpenForReading(const std::string& path) { return OpenReading(path).IsOpen(); }

bool FileExists(const std::string& path) { return StatusOf(path).has_value() || errno == EIO; }

bool CopyFileOver(const std::string& from, const std::string& to) {
  const std::unique_ptr<NativeFile> source = NativeFile::OpenForReading(from);
  if (source == nullptr) return false;
  const std::unique_ptr<ReplacementFile> target = ReplacementFile::Create(to);
  if (target == nullptr || !CopyContent(*source, target->File())) return false;
  struct stat status {};
  return ::fstat(static_cast<int>(source->Handle()), &status) == 0 &&
         ::fchmod(static_cast<int>(target->File().Handle()), status.st_mode & 0777) == 0 &&
         target->Commit();
}

std::unique_ptr<NativeFile> NativeFile::OpenForReading(const std::string& path) {
  const auto status = StatusOf(path);
  if (!status || !S_ISREG(status->st_mode)) return nullptr;
  Descriptor file = OpenReading(path);
  return file.IsOpen() ? std::make_unique<PosixFile>(std::move(file)) : nullptr;
}

std::unique_ptr<ReplacementFile> ReplacementFile::Create(const std::string& path) {
  const auto old = StatusOf(path);
  if (old ? !S_ISREG(old->st_mode) : errno != ENOENT) return nullptr;
  std::error_code error;
  // A link stays a link: what it points to is replaced.
  const std::string target = old ? std::filesystem::canonical(path, error).string() : path;
  if (!error) SweepBeside(target);
  std::string name;
  Descriptor file = error ? Descriptor() : CreateBeside(target, name);
  if (!file.IsOpen()) return old && !error ? OpenOver(target) : nullptr;
  if (old) (void)::fchmod(file.Number(), old->st_mode & 0777);
  return std::make_unique<PosixReplacement>(std::move(file), name, target);
}

}  // namespace gantry::platform
