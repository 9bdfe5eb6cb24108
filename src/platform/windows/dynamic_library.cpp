#include "platform/dynamic_library.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

class WindowsLibrary : public DynamicLibrary {
 public:
  explicit WindowsLibrary(HMODULE module) : module_(module) {}
  ~WindowsLibrary() override { FreeLibrary(module_); }

  void* Symbol(const char* name) const override {
    return reinterpret_cast<void*>(GetProcAddress(module_, name));
  }

 private:
  HMODULE module_;
};

std::string SystemMessage(DWORD error) {
  char text[512];
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, 0, text, sizeof text, nullptr);
  const std::string message(text, length);
  const size_t end = message.find_last_not_of(" \r\n") + 1;
  return end > 0 ? message.substr(0, end) : "system error " + std::to_string(error);
}

}  // namespace

std::unique_ptr<DynamicLibrary> DynamicLibrary::Open(const std::string& path, std::string* error) {
  // What the library itself needs is looked for beside it, not beside the program.
  const bool hasFolder = path.find_first_of("/\\") != std::string::npos;
  HMODULE module =
      LoadLibraryExA(path.c_str(), nullptr, hasFolder ? LOAD_WITH_ALTERED_SEARCH_PATH : DWORD{0});
  if (module != nullptr) return std::make_unique<WindowsLibrary>(module);
  if (error != nullptr) *error = path + ": " + SystemMessage(GetLastError());
  return nullptr;
}

std::string ModuleFolder() {
  HMODULE module = nullptr;
  const BOOL found = GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&ModuleFolder), &module);
  constexpr DWORD kLongestPath = 32768;
  std::string file(kLongestPath, '\0');
  const DWORD length = found != 0 ? GetModuleFileNameA(module, file.data(), kLongestPath) : 0;
  if (length == 0 || length == kLongestPath) return {};
  return file.substr(0, file.rfind('\\', length) + 1);
}

std::string LibraryFileName(const std::string& name) { return name + ".dll"; }

std::string ProgramFileName(const std::string& name) { return name + ".exe"; }

}  // namespace gantry::platform
