#pragma once

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/free_ports.h"

namespace gantry::fieldrun::test {

/// fieldrun on a terminal of its own, from the start to the end of this object.
class OnTerminal {
 public:
  explicit OnTerminal(std::vector<std::string> line) {
    line.insert(line.begin(), FIELDRUN);
    std::vector<char*> arguments;
    for (std::string& argument : line) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    gantry::test::StartSimulatorsOnFreePorts();
    process = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process == 0) {
      ::execv(FIELDRUN, arguments.data());
      ::_exit(127);
    }
  }
  ~OnTerminal() {
    if (process > 0) ::kill(process, SIGKILL);
    Wait();
  }
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;

  /// Takes what the terminal shows next; false when nobody writes there any more.
  bool Listen() {
    std::array<char, 4096> part{};
    const ssize_t count = ::read(terminal, part.data(), part.size());
    if (count > 0) said.append(part.data(), static_cast<size_t>(count));
    return count > 0;
  }
  /// Listens until the text has been shown; false when it never was.
  bool ListenFor(const std::string& text) {
    while (said.find(text) == std::string::npos) {
      if (!Listen()) return false;
    }
    return true;
  }
  void ListenToTheEnd() { ListenFor("what no program says"); }
  /// The status with which the program ended; see waitpid(2).
  int Wait() {
    if (process > 0) ::waitpid(process, &status, 0);
    process = -1;
    return status;
  }

  std::string said;
  int terminal = -1;
  pid_t process = -1;
  int status = 0;
};

}  // namespace gantry::fieldrun::test
