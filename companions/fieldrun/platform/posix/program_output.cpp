#include "fieldrun/platform/program_output.h"

#include <array>
#include <cstdio>

#include <sys/wait.h>

namespace gantry::fieldrun {
namespace {

std::string Quoted(const std::string& argument) {
  std::string quoted = "'";
  for (const char c : argument) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

}  // namespace

ProgramOutput OutputOf(const std::string& program, const std::vector<std::string>& arguments) {
  // The shell becomes the program, so that a signal that ends it is seen here and told by nobody.
  std::string command = "exec " + Quoted(program);
  for (const std::string& argument : arguments) command += " " + Quoted(argument);
  std::FILE* const pipe = ::popen((command + " </dev/null").c_str(), "re");
  if (pipe == nullptr) return {};
  ProgramOutput output;
  std::array<char, 4096> buffer{};
  for (size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    output.text.append(buffer.data(), got);
  }
  const int status = ::pclose(pipe);
  if (WIFEXITED(status)) output.status = WEXITSTATUS(status);
  return output;
}

}  // namespace gantry::fieldrun
