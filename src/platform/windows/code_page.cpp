#include "platform/text.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

std::string CodePageToUtf8(std::string_view text) { return Narrow(CP_UTF8, Widen(CP_ACP, text)); }

}  // namespace gantry::platform
