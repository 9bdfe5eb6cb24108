#include "platform/registry.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

constexpr REGSAM kReadAndWrite = 0x2001F;

class WindowsKey : public RegistryKey {
 public:
  explicit WindowsKey(HKEY key) : key_(key) {}
  ~WindowsKey() override { RegCloseKey(key_); }

  std::optional<std::string> ReadText(const std::string& name) override {
    DWORD size = 0;
    if (!Query(name, REG_SZ, nullptr, &size)) return std::nullopt;
    std::string text(size, '\0');
    if (!Query(name, REG_SZ, text.data(), &size)) return std::nullopt;
    text.resize(size);
    const size_t end = text.find('\0');  // stored with its terminator
    return end == std::string::npos ? text : text.substr(0, end);
  }

  std::optional<uint32_t> ReadNumber(const std::string& name) override {
    uint32_t number = 0;
    DWORD size = sizeof number;
    if (!Query(name, REG_DWORD, &number, &size) || size != sizeof number) return std::nullopt;
    return number;
  }

  bool WriteText(const std::string& name, const std::string& text) override {
    return Set(name, REG_SZ, text.c_str(), text.size() + 1);
  }

  bool WriteNumber(const std::string& name, uint32_t number) override {
    return Set(name, REG_DWORD, &number, sizeof number);
  }

 private:
  bool Query(const std::string& name, DWORD wanted, void* data, DWORD* size) const {
    DWORD type = REG_NONE;
    const LSTATUS status =
        RegQueryValueExA(key_, name.c_str(), nullptr, &type, static_cast<BYTE*>(data), size);
    return status == ERROR_SUCCESS && type == wanted;
  }

  bool Set(const std::string& name, DWORD type, const void* data, size_t size) const {
    return RegSetValueExA(key_, name.c_str(), 0, type, static_cast<const BYTE*>(data),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
  }

  HKEY key_;
};

/// The predefined roots are 32-bit numbers, which the system wants extended with their sign.
HKEY RootOf(uintptr_t root) {
  return reinterpret_cast<HKEY>(static_cast<intptr_t>(static_cast<int32_t>(root)));
}

}  // namespace

std::unique_ptr<RegistryKey> RegistryKey::Create(uintptr_t root, const std::string& path) {
  HKEY key = nullptr;
  const HKEY parent = root <= UINT32_MAX ? RootOf(root) : reinterpret_cast<HKEY>(root);
  if (RegCreateKeyExA(parent, path.c_str(), 0, nullptr, 0, kReadAndWrite, nullptr, &key, nullptr) !=
      ERROR_SUCCESS) {
    return nullptr;
  }
  return std::make_unique<WindowsKey>(key);
}

}  // namespace gantry::platform
