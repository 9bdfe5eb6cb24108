#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace gantry::platform {

/// True when the file exists and can be opened for reading. An empty path can't.
bool CanOpenForReading(const std::string& path);

/// True when something of that name exists.
bool FileExists(const std::string& path);

/// Copies a file over whatever stands at `to`; false when that fails.
bool CopyFileOver(const std::string& from, const std::string& to);

/// An open file whose position is shared by all who use its native handle: a POSIX descriptor, a
/// Windows HANDLE. Closed with the object.
class NativeFile {
 public:
  virtual ~NativeFile() = default;

  virtual intptr_t Handle() const = 0;
  virtual bool Write(const void* bytes, size_t length) = 0;  ///< false on a short write
  virtual bool Read(void* bytes, size_t length) = 0;         ///< false unless all could be read
  /// Bytes from here to the end; more than any file has where the system doesn't tell.
  virtual uint64_t Remaining() const = 0;

  static std::unique_ptr<NativeFile> OpenForReading(const std::string& path);
};

/// A file that is written aside and takes its final name only when all of it is on the disk, so
/// that a failed save leaves the old file in place. What a process that was killed has left aside
/// is swept away by the next who writes the same file. Where the folder takes no new file but the
/// old one may be written, the new content is put over the old once there is room for it.
class ReplacementFile {
 public:
  virtual ~ReplacementFile() = default;  ///< drops the new file unless it was committed

  virtual NativeFile& File() = 0;
  /// Flushes and renames over the old file, once; false leaves that as it was.
  bool Commit() { return isCommitted_ = isCommitted_ || TakePlace(); }

  static std::unique_ptr<ReplacementFile> Create(const std::string& path);

 protected:
  bool IsCommitted() const { return isCommitted_; }

 private:
  virtual bool TakePlace() = 0;

  bool isCommitted_ = false;
};

/// The separator that this platform puts between a directory and a name: '/' or '\\'.
extern const char kPathSeparator;

/// Cuts the path at its last separator of this platform ("/" on POSIX): the directory without its
/// closing separator, or an empty text when there is none.
inline std::string DirectoryOf(const std::string& path) {
  const size_t cut = path.rfind(kPathSeparator);
  return cut == std::string::npos ? std::string() : path.substr(0, cut);
}

}  // namespace gantry::platform
