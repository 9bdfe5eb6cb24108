#include "fieldrun/driver/module_text.h"

#include "fieldrun/driver/driver_model.h"
#include "platform/text.h"

namespace gantry::fieldrun {

std::string NameForModule(const std::string& name) {
  std::string text = platform::Utf8ToCodePage(name);
  if (platform::CodePageToUtf8(text) == name) return text;
  throw DriverFailure("The module's code page lacks a character of " + name);
}

std::string TextOfModule(const std::string& text) {
  return platform::IsUtf8(text) ? text : platform::CodePageToUtf8(text);
}

}  // namespace gantry::fieldrun
