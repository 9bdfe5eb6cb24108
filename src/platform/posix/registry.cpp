#include "platform/registry.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "platform/files.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/locked_file.h"
#include "platform/posix/user_folders.h"
#include "platform/registry_text.h"

namespace gantry::platform {

namespace {

struct Root {
  uint32_t handle;
  const char* name;
};
constexpr std::array<Root, 5> kRoots = {{{0x80000000, "HKEY_CLASSES_ROOT"},
                                         {0x80000001, "HKEY_CURRENT_USER"},
                                         {0x80000002, "HKEY_LOCAL_MACHINE"},
                                         {0x80000003, "HKEY_USERS"},
                                         {0x80000005, "HKEY_CURRENT_CONFIG"}}};

/// The name of a root. The handles are sign-extended where they come from a 64-bit Windows program.
const char* RootName(uintptr_t root) {
  const auto high = static_cast<uint32_t>(root >> 32);
  for (const Root& known : kRoots) {
    if (known.handle == static_cast<uint32_t>(root) && (high == 0 || high == 0xFFFFFFFF)) {
      return known.name;
    }
  }
  return nullptr;
}

constexpr uint64_t kMostFileBytes = uint64_t{16} << 20;

/// The file's content, empty when there is surely none; nothing when it can't be read.
std::optional<std::string> ReadStore(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.IsOpen()) return errno == ENOENT ? std::optional(std::string()) : std::nullopt;
  std::string content;
  std::array<char, 65536> piece = {};
  while (content.size() <= kMostFileBytes) {
    const ssize_t got =
        WithoutInterrupts([&] { return ::read(file.Number(), piece.data(), piece.size()); });
    if (got < 0) return std::nullopt;
    if (got == 0) return content;
    content.append(piece.data(), static_cast<size_t>(got));
  }
  return std::nullopt;
}

bool WriteStore(const std::string& path, const std::string& content) {
  const auto file = ReplacementFile::Create(path);
  return file != nullptr && file->File().Write(content.data(), content.size()) && file->Commit();
}

/// One key of the file. Every read takes the file afresh, or what the last one saw where the file
/// can't be read; every write puts it down whole.
class FileKey : public RegistryKey {
 public:
  FileKey(std::string store, std::string key) : store_(std::move(store)), key_(std::move(key)) {}

  bool MakeSure();

  std::optional<std::string> ReadText(const std::string& name) override {
    const auto data = Find(name);
    return data ? ParseRegistryText(*data) : std::nullopt;
  }
  std::optional<uint32_t> ReadNumber(const std::string& name) override {
    const auto data = Find(name);
    return data ? ParseRegistryNumber(*data) : std::nullopt;
  }
  bool WriteText(const std::string& name, const std::string& text) override {
    return Write(name, FormatRegistryText(text));
  }
  bool WriteNumber(const std::string& name, uint32_t number) override {
    return Write(name, FormatRegistryNumber(number));
  }

 private:
  std::optional<std::string> Find(const std::string& name);
  bool Write(const std::string& name, const std::string& data);
  template <class Change>
  bool Edit(Change change);

  std::string store_;
  std::string key_;
  std::string seen_;
};

std::optional<std::string> FileKey::Find(const std::string& name) {
  if (auto content = ReadStore(store_)) seen_ = std::move(*content);
  return RegistryText(seen_).Find(key_, name);
}

template <class Change>
bool FileKey::Edit(Change change) {
  const LockedFile lock(store_ + ".lock");
  const auto content = lock.IsHeld() ? ReadStore(store_) : std::nullopt;
  if (!content) return false;
  RegistryText text(*content);
  change(text);
  const std::string changed = text.Text();
  return changed == *content || WriteStore(store_, changed);
}

bool FileKey::MakeSure() {
  const auto content = ReadStore(store_);
  if (!content) return false;
  seen_ = *content;
  return RegistryText(seen_).HasKey(key_) ||
         Edit([this](RegistryText& text) { text.AddKey(key_); });
}

bool FileKey::Write(const std::string& name, const std::string& data) {
  return Edit([&](RegistryText& text) {
    if (text.Find(key_, name) == data) return;
    text.AddKey(key_);
    text.Set(key_, name, data);
  });
}

bool HasControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

std::unique_ptr<RegistryKey> RegistryKey::Create(uintptr_t root, const std::string& path) {
  const char* rootName = RootName(root);
  if (rootName == nullptr || path.starts_with('\\') || HasControl(path)) return nullptr;
  const auto folder = ConfigFolder();
  if (!folder) return nullptr;
  std::string key = rootName;
  if (!path.empty()) key += "\\" + path.substr(0, path.find_last_not_of('\\') + 1);
  auto opened = std::make_unique<FileKey>(*folder + "/registry.reg", key);
  if (!opened->MakeSure()) return nullptr;
  return opened;
}

}  // namespace gantry::platform
