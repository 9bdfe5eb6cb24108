#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/windows/win32.h"

namespace gantry::test {

/// A file as the module hands it over: a handle with a position.
class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& path)
      : handle_(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~OpenFile() { ::CloseHandle(handle_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  intptr_t Handle() const { return reinterpret_cast<intptr_t>(handle_); }
  int64_t Position() const { return Move(0, FILE_CURRENT); }
  void MoveTo(int64_t position) const { Move(position, FILE_BEGIN); }

 private:
  int64_t Move(int64_t distance, DWORD from) const {
    LARGE_INTEGER target = {};
    target.QuadPart = distance;
    LARGE_INTEGER position = {};
    return ::SetFilePointerEx(handle_, target, &position, from) != 0 ? position.QuadPart : -1;
  }

  HANDLE handle_;
};

}  // namespace gantry::test
