#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace gantry::platform {

/// The handles by which the registry's roots are known at the boundary.
inline constexpr uintptr_t kCurrentUser = 0x80000001;
inline constexpr uintptr_t kLocalMachine = 0x80000002;

/// One key of the user's registry, or of the file that stands in for it. A value of another type
/// than asked for reads as absent. Writes reach the store at once; a failed one returns false.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;

  virtual std::optional<std::string> ReadText(const std::string& name) = 0;
  virtual std::optional<uint32_t> ReadNumber(const std::string& name) = 0;
  virtual bool WriteText(const std::string& name, const std::string& text) = 0;
  virtual bool WriteNumber(const std::string& name, uint32_t number) = 0;

  /// Opens the key, creating it when it is missing. `root` is one of the handles above. Null when
  /// the store refuses.
  static std::unique_ptr<RegistryKey> Create(uintptr_t root, const std::string& path);
};

}  // namespace gantry::platform
