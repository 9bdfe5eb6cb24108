#include "platform/file_path.h"

#include "platform/windows/wide_text.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

std::filesystem::path PathOf(const std::string& name) { return Widen(CP_ACP, name); }

std::string NameOf(const std::filesystem::path& path) { return Narrow(CP_ACP, path.native()); }

}  // namespace gantry::platform
