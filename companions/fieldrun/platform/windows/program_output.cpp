#include "fieldrun/platform/program_output.h"

#include <array>
#include <cstdio>

namespace gantry::fieldrun {

ProgramOutput OutputOf(const std::string& program, const std::vector<std::string>& arguments) {
  // Names of files hold no quotes here; the outer pair is the command interpreter's.
  std::string command = "\"\"" + program + "\"";
  for (const std::string& argument : arguments) command += " \"" + argument + "\"";
  std::FILE* const pipe = ::_popen((command + " <NUL\"").c_str(), "r");
  if (pipe == nullptr) return {};
  ProgramOutput output;
  std::array<char, 4096> buffer{};
  for (size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    output.text.append(buffer.data(), got);
  }
  output.status = ::_pclose(pipe);
  return output;
}

}  // namespace gantry::fieldrun
