#include "platform/files.h"

#include <algorithm>
#include <limits>

#include "platform/aside_file.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

const char kPathSeparator = '\\';

namespace {

/// One call moves no more than 32 bits can count, and may move less than it was asked for.
template <class Move>
bool InPieces(size_t length, Move move) {
  constexpr size_t kMost = size_t{1} << 30;
  for (size_t done = 0; done < length;) {
    DWORD moved = 0;
    if (move(done, static_cast<DWORD>(std::min(length - done, kMost)), moved) == 0) return false;
    if (moved == 0) return false;
    done += moved;
  }
  return true;
}

class WindowsFile : public NativeFile {
 public:
  explicit WindowsFile(HANDLE handle) : handle_(handle) {}
  ~WindowsFile() override { Close(); }
  WindowsFile(const WindowsFile&) = delete;
  WindowsFile& operator=(const WindowsFile&) = delete;

  intptr_t Handle() const override { return reinterpret_cast<intptr_t>(handle_); }

  bool Write(const void* bytes, size_t length) override {
    return InPieces(length, [&](size_t done, DWORD piece, DWORD& moved) {
      return WriteFile(handle_, static_cast<const char*>(bytes) + done, piece, &moved, nullptr);
    });
  }

  bool Read(void* bytes, size_t length) override {
    return InPieces(length, [&](size_t done, DWORD piece, DWORD& moved) {
      return ReadFile(handle_, static_cast<char*>(bytes) + done, piece, &moved, nullptr);
    });
  }

  uint64_t Remaining() const override {
    LARGE_INTEGER size = {};
    LARGE_INTEGER position = {};
    if (GetFileSizeEx(handle_, &size) == 0 ||
        SetFilePointerEx(handle_, {}, &position, FILE_CURRENT) == 0) {
      return std::numeric_limits<uint64_t>::max();
    }
    return static_cast<uint64_t>(size.QuadPart - position.QuadPart);
  }

  bool Flush() { return FlushFileBuffers(handle_) != 0; }
  void Close() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE handle_;
};

HANDLE OpenExisting(const std::string& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileA(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// A new file beside `path`, under a name that nobody has.
HANDLE CreateBeside(const std::string& path, std::string& name) {
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    name = NewAsideName(path, GetCurrentProcessId());
    HANDLE handle = CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return handle;
  }
  return INVALID_HANDLE_VALUE;
}

bool IsProcess(DWORD number) {
  HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, number);
  if (process == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  CloseHandle(process);
  return true;
}

/// What processes that were killed have left beside `path`. A file that is open isn't deleted.
void SweepBeside(const std::string& path) {
  for (const AsideFile& aside : FindAsideFiles(path)) {
    if (!IsProcess(aside.process)) DeleteFileA(aside.path.c_str());
  }
}

/// A new file in the system's folder for temporary ones, for the place of one that may be written.
HANDLE CreateElsewhere(const std::string& path, std::string& name) {
  HANDLE target = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (target == INVALID_HANDLE_VALUE) return target;
  CloseHandle(target);
  char folder[MAX_PATH + 1] = {};
  char file[MAX_PATH + 1] = {};
  if (GetTempPathA(sizeof folder, folder) == 0 || GetTempFileNameA(folder, "gnt", 0, file) == 0) {
    return INVALID_HANDLE_VALUE;
  }
  name = file;
  return CreateFileA(file, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                     FILE_ATTRIBUTE_TEMPORARY, nullptr);
}

class WindowsReplacement : public ReplacementFile {
 public:
  WindowsReplacement(HANDLE handle, std::string aside, std::string path, bool isBeside)
      : file_(handle), aside_(std::move(aside)), path_(std::move(path)), isBeside_(isBeside) {}
  ~WindowsReplacement() override {
    file_.Close();
    if (!IsCommitted() || !isBeside_) DeleteFileA(aside_.c_str());
  }

  NativeFile& File() override { return file_; }

 private:
  bool TakePlace() override {
    if (!file_.Flush()) return false;
    file_.Close();
    constexpr DWORD kOver = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return (isBeside_ ? MoveFileExA(aside_.c_str(), path_.c_str(), kOver)
                      : CopyFileA(aside_.c_str(), path_.c_str(), FALSE)) != 0;
  }

  WindowsFile file_;
  std::string aside_;
  std::string path_;
  bool isBeside_;
};

}  // namespace

bool CanOpenForReading(const std::string& path) {
  if (path.empty()) return false;
  WindowsFile file(OpenExisting(path));
  return reinterpret_cast<HANDLE>(file.Handle()) != INVALID_HANDLE_VALUE;
}

bool FileExists(const std::string& path) {
  return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool CopyFileOver(const std::string& from, const std::string& to) {
  return CopyFileA(from.c_str(), to.c_str(), FALSE) != 0;
}

std::unique_ptr<NativeFile> NativeFile::OpenForReading(const std::string& path) {
  HANDLE handle = OpenExisting(path);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  auto file = std::make_unique<WindowsFile>(handle);
  return GetFileType(handle) == FILE_TYPE_DISK ? std::move(file) : nullptr;
}

std::unique_ptr<ReplacementFile> ReplacementFile::Create(const std::string& path) {
  const DWORD old = GetFileAttributesA(path.c_str());
  if (old != INVALID_FILE_ATTRIBUTES && (old & FILE_ATTRIBUTE_DIRECTORY) != 0) return nullptr;
  SweepBeside(path);
  std::string aside;
  HANDLE handle = CreateBeside(path, aside);
  const bool isBeside = handle != INVALID_HANDLE_VALUE;
  if (!isBeside && old != INVALID_FILE_ATTRIBUTES) handle = CreateElsewhere(path, aside);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<WindowsReplacement>(handle, aside, path, isBeside);
}

}  // namespace gantry::platform
