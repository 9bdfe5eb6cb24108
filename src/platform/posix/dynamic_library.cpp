#include "platform/dynamic_library.h"

#include <filesystem>

#include <dlfcn.h>

#include "platform/files.h"

namespace gantry::platform {

namespace {

std::string FindModuleFolder() {
  Dl_info info{};
  std::error_code error;
  std::filesystem::path file;
  if (::dladdr(reinterpret_cast<void*>(&ModuleFolder), &info) != 0 && info.dli_fname != nullptr) {
    file = info.dli_fname;
  }
  // A program that was found on the search path is known to the loader by its bare name.
  file = file.has_parent_path() ? std::filesystem::absolute(file, error)
                                : std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return DirectoryOf(file.string()) + kPathSeparator;
}

/// Found when the binary is loaded: a relative name is only good until the folder changes.
[[maybe_unused]] const bool kFoundAtLoad = !ModuleFolder().empty();

}  // namespace

DynamicLibrary::~DynamicLibrary() { ::dlclose(handle_); }

void* DynamicLibrary::Symbol(const char* name) const { return ::dlsym(handle_, name); }

std::unique_ptr<DynamicLibrary> DynamicLibrary::Open(const std::string& path, std::string* error) {
  return OpenAt(path, error);
}

std::unique_ptr<DynamicLibrary> DynamicLibrary::OpenAt(const std::filesystem::path& path,
                                                       std::string* error) {
  void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle != nullptr) return std::make_unique<DynamicLibrary>(handle);
  if (error != nullptr) {
    const char* reason = ::dlerror();
    *error = reason != nullptr ? reason : "";
  }
  return nullptr;
}

std::string ModuleFolder() {
  static const std::string folder = FindModuleFolder();
  return folder;
}

std::filesystem::path ModuleDirectory() { return ModuleFolder(); }

std::vector<std::filesystem::path> LibraryPlaces(const std::string& name) {
  const std::string file = LibraryFileName(name);
  const std::string folder = ModuleFolder();
  if (folder.empty()) return {file};
  return {folder + file, file};
}

std::string LibraryFileName(const std::string& name) { return "lib" + name + ".so"; }

std::string ProgramFileName(const std::string& name) { return name; }

}  // namespace gantry::platform
