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

}  // namespace

std::unique_ptr<DynamicLibrary> DynamicLibrary::Open(const std::string& path, std::string* error) {
  HMODULE module = LoadLibraryA(path.c_str());
  if (module != nullptr) return std::make_unique<WindowsLibrary>(module);
  if (error != nullptr) *error = path + ": system error " + std::to_string(GetLastError());
  return nullptr;
}

std::string ModuleFolder() {
  HMODULE module = nullptr;
  const BOOL found = GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&ModuleFolder), &module);
  char path[MAX_PATH];
  const DWORD length = found != 0 ? GetModuleFileNameA(module, path, MAX_PATH) : 0;
  if (length == 0 || length == MAX_PATH) return {};
  const std::string file(path, length);
  return file.substr(0, file.rfind('\\') + 1);
}

std::string LibraryFileName(const std::string& name) { return name + ".dll"; }

std::string ProgramFileName(const std::string& name) { return name + ".exe"; }

}  // namespace gantry::platform
