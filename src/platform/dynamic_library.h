#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace gantry::platform {

/// A dynamic library, held open for the life of the object.
class DynamicLibrary {
 public:
  /// Takes over what the system has opened.
  explicit DynamicLibrary(void* handle) : handle_(handle) {}
  ~DynamicLibrary();
  DynamicLibrary(const DynamicLibrary&) = delete;
  DynamicLibrary& operator=(const DynamicLibrary&) = delete;

  /// The address of a symbol, null when the library has none of that name.
  void* Symbol(const char* name) const;
  /// The same as a function; false when there is none.
  template <class Function>
  bool Bind(Function*& function, const char* name) const {
    function = reinterpret_cast<Function*>(Symbol(name));
    return function != nullptr;
  }

  /// Opens the library at `path`. Without a directory it is looked for by the loader's own rules on
  /// POSIX, and in the current folder alone on Windows. Null, with the system's reason in `error`
  /// when given, if it can't be opened.
  static std::unique_ptr<DynamicLibrary> Open(const std::string& path,
                                              std::string* error = nullptr);
  static std::unique_ptr<DynamicLibrary> OpenAt(const std::filesystem::path& path,
                                                std::string* error = nullptr);

 private:
  void* handle_;
};

/// The folder that holds the binary into which this code is linked, with its closing separator;
/// empty when the system doesn't tell. As a text it may lack what the code page lacks.
std::filesystem::path ModuleDirectory();
std::string ModuleFolder();

/// Where a library of this name may stand, the best place first: beside the binary into which this
/// code is linked, then where the system keeps libraries. Never the current folder.
std::vector<std::filesystem::path> LibraryPlaces(const std::string& name);

/// The file name of a dynamic library here: "lib" + name + ".so", or name + ".dll".
std::string LibraryFileName(const std::string& name);

/// The file name of a program here: the name as it is, or name + ".exe".
std::string ProgramFileName(const std::string& name);

}  // namespace gantry::platform
