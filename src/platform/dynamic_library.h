#pragma once

#include <memory>
#include <string>

namespace gantry::platform {

/// A dynamic library, held open for the life of the object.
class DynamicLibrary {
 public:
  virtual ~DynamicLibrary() = default;

  /// The address of a symbol, null when the library has none of that name.
  virtual void* Symbol(const char* name) const = 0;

  /// Opens the library at `path`, or by the loader's own rules when `path` has no directory.
  /// Null, with the system's reason in `error` when given, if it can't be opened.
  static std::unique_ptr<DynamicLibrary> Open(const std::string& path,
                                              std::string* error = nullptr);
};

/// The folder that holds the binary into which this code is linked, with its closing separator;
/// empty when the system doesn't tell.
std::string ModuleFolder();

/// The file name of a dynamic library here: "lib" + name + ".so", or name + ".dll".
std::string LibraryFileName(const std::string& name);

/// The file name of a program here: the name as it is, or name + ".exe".
std::string ProgramFileName(const std::string& name);

}  // namespace gantry::platform
