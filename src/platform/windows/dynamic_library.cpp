#include "platform/dynamic_library.h"

#include "platform/file_path.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

std::string SystemMessage(DWORD error) {
  char text[512];
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, 0, text, sizeof text, nullptr);
  const std::string message(text, length);
  const size_t end = message.find_last_not_of(" \r\n") + 1;
  return end > 0 ? message.substr(0, end) : "system error " + std::to_string(error);
}

constexpr DWORD kLongestPath = 32768;

/// The folder of a module's file; null stands for the program.
std::filesystem::path FolderOf(HMODULE module) {
  std::wstring file(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(module, file.data(), kLongestPath);
  if (length == 0 || length == kLongestPath) return {};
  return file.substr(0, file.rfind(L'\\', length) + 1);
}

std::filesystem::path SystemFolder() {
  std::wstring folder(kLongestPath, L'\0');
  const UINT length = GetSystemDirectoryW(folder.data(), kLongestPath);
  return length < kLongestPath ? folder.substr(0, length) : std::wstring();
}

}  // namespace

DynamicLibrary::~DynamicLibrary() { FreeLibrary(static_cast<HMODULE>(handle_)); }

void* DynamicLibrary::Symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

std::unique_ptr<DynamicLibrary> DynamicLibrary::Open(const std::string& path, std::string* error) {
  return OpenAt(PathOf(path), error);
}

std::unique_ptr<DynamicLibrary> DynamicLibrary::OpenAt(const std::filesystem::path& path,
                                                       std::string* error) {
  // What the library itself needs is looked for beside it, beside the program, and in the system.
  constexpr DWORD kPlaces = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
  std::error_code failure;
  const std::filesystem::path file = std::filesystem::absolute(path, failure);
  HMODULE module = failure ? nullptr : LoadLibraryExW(file.c_str(), nullptr, kPlaces);
  if (module != nullptr) return std::make_unique<DynamicLibrary>(module);
  if (error != nullptr) *error = NameOf(path) + ": " + SystemMessage(GetLastError());
  return nullptr;
}

std::filesystem::path ModuleDirectory() {
  HMODULE module = nullptr;
  const BOOL found = GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ModuleFolder), &module);
  return found != 0 ? FolderOf(module) : std::filesystem::path();
}

std::string ModuleFolder() { return NameOf(ModuleDirectory()); }

std::vector<std::filesystem::path> LibraryPlaces(const std::string& name) {
  const std::string file = LibraryFileName(name);
  std::vector<std::filesystem::path> places;
  for (const auto& folder : {ModuleDirectory(), FolderOf(nullptr), SystemFolder()}) {
    if (!folder.empty()) places.push_back(folder / file);
  }
  return places;
}

std::string LibraryFileName(const std::string& name) { return name + ".dll"; }

std::string ProgramFileName(const std::string& name) { return name + ".exe"; }

}  // namespace gantry::platform
