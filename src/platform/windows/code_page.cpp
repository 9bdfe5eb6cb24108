#include "platform/text.h"
#include "platform/windows/win32.h"

namespace gantry::platform {

std::string CodePageToUtf8(std::string_view text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(),
                                                      static_cast<int>(wide.size()))));
  const int wideLength = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

}  // namespace gantry::platform
