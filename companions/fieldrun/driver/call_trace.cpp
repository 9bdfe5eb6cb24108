#include "fieldrun/driver/call_trace.h"

#include <stdexcept>

#include <fmt/format.h>

namespace gantry::fieldrun {

namespace {

double Seconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') quoted += '\\';
    if (code < 0x20) {
      quoted += fmt::format("\\x{:02x}", code);
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

CallTrace::CallTrace(const std::string& path) : file_(path, std::ios::trunc) {
  if (!file_) throw std::runtime_error("The trace " + path + " can't be written");
}

void CallTrace::Begin(std::string_view function, const std::string& arguments) {
  callBegan_ = Clock::now();
  file_ << fmt::format("{:.6f} {}({})", Seconds(callBegan_ - logBegan_), function, arguments)
        << std::flush;
}

void CallTrace::End(int32_t result, const std::string& outcome) {
  file_ << fmt::format(" = {} <{:.6f}>{}{}\n", result, Seconds(Clock::now() - callBegan_),
                       outcome.empty() ? "" : "  ", outcome)
        << std::flush;
}

std::string TraceValue(std::string_view text) { return Quoted(text); }

std::string TraceValue(double number) { return fmt::format("{}", number); }

std::string TraceValue(int32_t number) { return fmt::format("{}", number); }

std::string TraceValue(uint32_t number) { return fmt::format("{}", number); }

std::string TraceValue(std::span<const double> numbers) {
  return fmt::format("[{}]", fmt::join(numbers, " "));
}

}  // namespace gantry::fieldrun
