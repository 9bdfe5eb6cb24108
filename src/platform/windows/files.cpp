#include "platform/files.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

const char kPathSeparator = '\\';

namespace {

class WindowsFile : public NativeFile {
 public:
  explicit WindowsFile(HANDLE handle) : handle_(handle) {}
  ~WindowsFile() override { Close(); }
  WindowsFile(const WindowsFile&) = delete;
  WindowsFile& operator=(const WindowsFile&) = delete;

  intptr_t Handle() const override { return reinterpret_cast<intptr_t>(handle_); }

  bool Write(const void* bytes, size_t length) override {
    DWORD written = 0;
    return WriteFile(handle_, bytes, static_cast<DWORD>(length), &written, nullptr) != 0 &&
           written == length;
  }

  bool Read(void* bytes, size_t length) override {
    DWORD read = 0;
    return ReadFile(handle_, bytes, static_cast<DWORD>(length), &read, nullptr) != 0 &&
           read == length;
  }

  uint64_t Remaining() const override {
    LARGE_INTEGER size = {};
    LARGE_INTEGER position = {};
    if (GetFileSizeEx(handle_, &size) == 0) return 0;
    if (SetFilePointerEx(handle_, {}, &position, FILE_CURRENT) == 0) return 0;
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
  return CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

class WindowsReplacement : public ReplacementFile {
 public:
  WindowsReplacement(HANDLE handle, std::string aside, std::string path)
      : file_(handle), aside_(std::move(aside)), path_(std::move(path)) {}
  ~WindowsReplacement() override {
    file_.Close();
    if (!committed_) DeleteFileA(aside_.c_str());
  }

  NativeFile& File() override { return file_; }

  bool Commit() override {
    if (!file_.Flush()) return false;
    file_.Close();
    committed_ = MoveFileExA(aside_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    return committed_;
  }

 private:
  WindowsFile file_;
  std::string aside_;
  std::string path_;
  bool committed_ = false;
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
  return std::make_unique<WindowsFile>(handle);
}

std::unique_ptr<ReplacementFile> ReplacementFile::Create(const std::string& path) {
  const std::string aside = path + "." + std::to_string(GetCurrentProcessId()) + ".new";
  HANDLE handle = CreateFileA(aside.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<WindowsReplacement>(handle, aside, path);
}

std::string DirectoryOf(const std::string& path) {
  const size_t cut = path.rfind('\\');
  return cut == std::string::npos ? std::string() : path.substr(0, cut);
}

}  // namespace gantry::platform
