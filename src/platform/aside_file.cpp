#include "platform/aside_file.h"

#include <atomic>
#include <charconv>
#include <optional>
#include <string_view>

#include "platform/file_path.h"

namespace gantry::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnding = ".new";

/// Cuts a number and what must follow it off a text.
std::optional<uint32_t> TakeNumber(std::string_view& text, std::string_view behind) {
  uint32_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(read.ptr - text.data()));
  if (!text.starts_with(behind)) return std::nullopt;
  text.remove_prefix(behind.size());
  return number;
}

/// The process that has made a file of this name for one called `name`.
std::optional<uint32_t> MakerOf(std::string_view aside, std::string_view name) {
  if (!aside.starts_with(name)) return std::nullopt;
  aside.remove_prefix(name.size());
  if (!aside.starts_with('.')) return std::nullopt;
  aside.remove_prefix(1);
  const auto process = TakeNumber(aside, "-");
  return process && TakeNumber(aside, kEnding) && aside.empty() ? process : std::nullopt;
}

}  // namespace

std::string NewAsideName(const std::string& path, uint32_t process) {
  static std::atomic<uint32_t> counter{0};
  return path + "." + std::to_string(process) + "-" + std::to_string(++counter) +
         std::string(kEnding);
}

std::vector<AsideFile> FindAsideFiles(const std::string& path) {
  const fs::path target = PathOf(path);
  const std::string name = NameOf(target.filename());
  const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
  std::vector<AsideFile> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto maker = MakerOf(NameOf(entry->path().filename()), name);
    if (maker) found.push_back({NameOf(entry->path()), *maker});
  }
  return found;
}

}  // namespace gantry::platform
