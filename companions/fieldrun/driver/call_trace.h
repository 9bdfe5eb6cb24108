#pragma once

#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "gantry/boundary.h"

namespace gantry::fieldrun {

/// A log of every call over the module's boundary, one line each: the function, its arguments and
/// its result, with numbers to their last digit, so that a run can be followed or made again; when
/// it began, in seconds since the log did, and how long it took.
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
  using Clock = std::chrono::steady_clock;

  std::ofstream file_;
  Clock::time_point logBegan_ = Clock::now();
  Clock::time_point callBegan_;
};

/// Makes a call, and logs it where there is a trace. `call` gives the result, and may fill the text
/// of the outcome that it is passed.
template <class Call>
int32_t Traced(CallTrace* trace, std::string_view function, const std::string& arguments,
               Call call) {
  std::string outcome;
  if (trace != nullptr) trace->Begin(function, arguments);
  const int32_t result = call(outcome);
  if (trace != nullptr) trace->End(result, outcome);
  return result;
}

/// A value as the trace shows it.
std::string TraceValue(std::string_view text);
std::string TraceValue(double number);
std::string TraceValue(int32_t number);
std::string TraceValue(uint32_t number);
std::string TraceValue(std::span<const double> numbers);

/// Names of fields and their values in turn, put together as "name=value, name=value".
template <class Value, class... Rest>
std::string TraceFields(std::string_view name, const Value& value, const Rest&... rest) {
  std::string text = std::string(name) + "=" + TraceValue(value);
  if constexpr (sizeof...(rest) > 0) text += ", " + TraceFields(rest...);
  return text;
}

/// A text in quotes, with quotes, backslashes and control characters escaped.
std::string Quoted(std::string_view text);

}  // namespace gantry::fieldrun
