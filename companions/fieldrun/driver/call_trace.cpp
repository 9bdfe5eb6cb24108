#include "fieldrun/driver/call_trace.h"

#include <stdexcept>

#include <fmt/format.h>

namespace gantry::fieldrun {

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
  file_ << function << '(' << arguments << ')' << std::flush;
}

void CallTrace::End(int32_t result, const std::string& outcome) {
  file_ << " = " << result << (outcome.empty() ? "" : "  ") << outcome << '\n' << std::flush;
}

TraceText& TraceText::AddRaw(std::string_view name, const std::string& value) {
  text_ += fmt::format("{}{}={}", text_.empty() ? "" : ", ", name, value);
  return *this;
}

TraceText& TraceText::Add(std::string_view name, std::string_view text) {
  return AddRaw(name, Quoted(text));
}

TraceText& TraceText::Add(std::string_view name, double number) {
  return AddRaw(name, fmt::format("{}", number));
}

TraceText& TraceText::Add(std::string_view name, int32_t number) {
  return AddRaw(name, fmt::format("{}", number));
}

TraceText& TraceText::Add(std::string_view name, std::span<const double> numbers) {
  std::string list;
  for (const double number : numbers) list += fmt::format("{}{}", list.empty() ? "" : " ", number);
  return AddRaw(name, "[" + list + "]");
}

}  // namespace gantry::fieldrun
