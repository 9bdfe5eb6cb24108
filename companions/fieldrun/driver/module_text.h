#pragma once

#include <cstring>
#include <string>

namespace gantry::fieldrun {

// This program holds its texts in UTF-8; the module takes and gives names in its code page. Names
// of files are the exception: they pass as the system has them.

/// A name for the module. Throws DriverFailure when the code page lacks one of its characters.
std::string NameForModule(const std::string& name);

/// A text of the module. One that is UTF-8 already, as names of files are, stays as it is.
std::string TextOfModule(const std::string& text);

/// The text of a fixed field, which has a terminator or fills the field.
template <size_t N>
std::string FieldText(const char (&field)[N]) {
  return TextOfModule(std::string(field, strnlen(field, N)));
}

}  // namespace gantry::fieldrun
