#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "gantry/boundary.h"

namespace gantry::fieldrun {

/// A log of every call over the module's boundary, one line each: the function, its arguments and
/// its result, with numbers to their last digit, so that a run can be followed or made again.
/// Written as it happens: a call that never comes back is the last line, without a result.
class CallTrace {
 public:
  /// Throws runtime_error when the file can't be written.
  explicit CallTrace(const std::string& path);

  void Begin(std::string_view function, const std::string& arguments);
  void End(int32_t result, const std::string& outcome);
  /// False once a line couldn't be written.
  bool IsWhole() const { return file_.good(); }

 private:
  std::ofstream file_;
};

/// Names of fields and their values, put together as "name=value, name=value".
class TraceText {
 public:
  TraceText& Add(std::string_view name, std::string_view text);
  TraceText& Add(std::string_view name, double number);
  TraceText& Add(std::string_view name, int32_t number);
  TraceText& Add(std::string_view name, std::span<const double> numbers);
  const std::string& Text() const { return text_; }

 private:
  TraceText& AddRaw(std::string_view name, const std::string& value);
  std::string text_;
};

/// A text in quotes, with quotes, backslashes and control characters escaped.
std::string Quoted(std::string_view text);

}  // namespace gantry::fieldrun
