#include "run_program.h"

#include <cstdlib>

#include <sys/wait.h>

namespace gantry::fieldrun::test {
namespace {

std::string Quote(const std::string& argument) {
  std::string quoted = "'";
  for (const char c : argument) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

}  // namespace

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& folder, const std::filesystem::path& out,
               const std::filesystem::path& err) {
  std::string command = "cd " + Quote(folder) + " && exec " + Quote(program);
  for (const std::string& argument : arguments) command += " " + Quote(argument);
  command += " >" + Quote(out) + " 2>" + Quote(err) + " </dev/null";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ShareSettingsWithPrograms() {}  // they inherit the place of the settings

}  // namespace gantry::fieldrun::test
