#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "text/tag_parser.h"

namespace gantry {

/// Splits what stands between the brackets of a command into arguments. docs/text-paths.md tells
/// the rules of quoting. One pass over the text; keeps no more arguments than it was asked for, but
/// counts them all.
class CommandArguments {
 public:
  CommandArguments(std::string_view text, CExtDataServerCmdArgumentCollection& arguments,
                   size_t keepAtMost)
      : text_(text), arguments_(arguments), keepAtMost_(keepAtMost) {}

  /// Scans from the opening bracket at `open`. The position behind the closing bracket, or none
  /// when the text ends first.
  std::optional<size_t> Scan(size_t open);
  size_t Count() const { return count_; }

 private:
  bool ClosesQuote(size_t position) const;
  void Append(char c);
  void Finish(bool quoted);

  std::string_view text_;
  CExtDataServerCmdArgumentCollection& arguments_;
  size_t keepAtMost_;
  size_t count_ = 0;

  std::string current_;
  bool begun_ = false;  ///< an argument without quotes is going on
  char quote_ = '\0';   ///< what ends the quote that is open, if one is
};

}  // namespace gantry
