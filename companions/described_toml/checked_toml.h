#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace gantry::toml_reader {

/// What the parser takes for granted of its input and doesn't hold, such as the first letter of
/// "[*]". It asserts such things, and no file of a user's may end the process by them.
struct ParserFault {};

constexpr void Check(bool holds) {
  if (!holds) throw ParserFault();
}

}  // namespace gantry::toml_reader

#ifdef TOML_ASSERT
#error "include this header in place of the parser's own"
#endif
#undef NDEBUG
#define TOML_ASSERT(expression) gantry::toml_reader::Check(static_cast<bool>(expression))
#include <toml++/toml.h>

namespace gantry::toml_reader {

/// A text that is no TOML: the line at fault, from 1, and what is wrong with it.
class TomlError : public std::runtime_error {
 public:
  TomlError(size_t line, const std::string& reason) : std::runtime_error(reason), Line(line) {}

  size_t Line;
};

/// What may stand ahead of a text in UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Parses a whole file's text; for any content, a table or a TomlError. Heavy to include: for the
/// source files that walk the table alone.
toml::table Parse(std::string_view text);

}  // namespace gantry::toml_reader
