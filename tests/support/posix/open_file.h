#pragma once

#include <cstdint>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace gantry::test {

/// A file as the module hands it over: a descriptor with a position.
class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& path)
      : descriptor_(::open(path.c_str(), O_RDWR | O_CREAT, 0600)) {}
  ~OpenFile() { ::close(descriptor_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  intptr_t Handle() const { return descriptor_; }
  int64_t Position() const { return ::lseek(descriptor_, 0, SEEK_CUR); }
  void MoveTo(int64_t position) const { ::lseek(descriptor_, position, SEEK_SET); }

 private:
  int descriptor_;
};

}  // namespace gantry::test
