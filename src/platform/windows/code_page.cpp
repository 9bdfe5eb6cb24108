#include "platform/text.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

std::string CodePageToUtf8(std::string_view text) { return Narrow(CP_UTF8, Widen(CP_ACP, text)); }

std::string Utf8ToCodePage(std::string_view text) { return Narrow(CP_ACP, Widen(CP_UTF8, text)); }

}  // namespace gantry::platform
