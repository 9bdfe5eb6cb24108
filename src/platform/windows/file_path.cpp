#include "platform/file_path.h"

#include "platform/text.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

std::filesystem::path PathOf(const std::string& name) { return Widen(CP_ACP, name); }

std::string NameOf(const std::filesystem::path& path) { return Narrow(CP_ACP, path.native()); }

std::string StoredFileName(const std::string& name) {
  if (GetACP() != CP_UTF8) return name;
  std::string stored = Utf8ToCodePage(name);
  return CodePageToUtf8(stored) == name ? stored : name;
}

std::string FileNameOfStored(const std::string& stored) {
  return GetACP() != CP_UTF8 || IsUtf8(stored) ? stored : CodePageToUtf8(stored);
}

}  // namespace gantry::platform
