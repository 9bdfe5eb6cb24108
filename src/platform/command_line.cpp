#include "platform/command_line.h"

namespace gantry::platform {

std::vector<std::string> SplitCommandLine(std::string_view commandLine) {
  std::vector<std::string> arguments;
  bool inArgument = false;
  bool inQuotes = false;
  for (const char c : commandLine) {
    if (!inQuotes && (c == ' ' || c == '\t')) {
      inArgument = false;
      continue;
    }
    if (!inArgument) arguments.emplace_back();
    inArgument = true;
    if (c == '"') {
      inQuotes = !inQuotes;
    } else {
      arguments.back() += c;
    }
  }
  return arguments;
}

}  // namespace gantry::platform
