#pragma once

#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"

namespace gantry::cluster {

/// The service's log: one line for each event, each written by one call so that the lines of
/// several processes don't mix. What stands in a line is shown, never obeyed: control characters
/// are escaped.
class Log {
 public:
  /// To standard error.
  Log() = default;
  /// Appends to the file; throws runtime_error when it can't be opened.
  explicit Log(const std::string& file);

  void Write(std::string_view text) const;
  int Descriptor() const { return file_.IsOpen() ? file_.Number() : STDERR_FILENO; }

 private:
  platform::Descriptor file_;
};

/// The text on one line: control characters become "\x" and two digits.
std::string OneLine(std::string_view text);

}  // namespace gantry::cluster
