#include "private_display.h"

#include <csignal>
#include <cstdlib>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace gantry::test {

std::unique_ptr<PrivateDisplay> PrivateDisplay::Start(std::string& reason) {
  int ends[2];
  if (::pipe(ends) != 0) return nullptr;
  // Ends some seconds after its last client, whatever becomes of this process, and holds none of
  // its files. At once would be too soon: a stranger may come and go before this process has come.
  std::string words[] = {"Xvfb", "-displayfd",   "3",         "-terminate", "10", "-screen",
                         "0",    "1600x1200x24", "-nolisten", "tcp"};
  char* arguments[std::size(words) + 1] = {};
  for (size_t i = 0; i < std::size(words); ++i) arguments[i] = words[i].data();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, output, "/dev/null", 1, 0);
  }
  posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
  posix_spawn_file_actions_addclosefrom_np(&actions, 4);
  pid_t process = 0;
  const int failure = ::posix_spawnp(&process, "Xvfb", &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  std::string number;
  for (char c = 0; failure == 0 && ::read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
  ::close(ends[0]);
  if (number.empty()) {
    reason = failure == 0 ? "Xvfb gave no display" : "Xvfb is not installed";
    return nullptr;
  }
  ::setenv("DISPLAY", (":" + number).c_str(), 1);
  return std::unique_ptr<PrivateDisplay>(new PrivateDisplay(process, ":" + number));
}

void PrivateDisplay::End() {
  if (process_ == 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = 0;
}

PrivateDisplay::~PrivateDisplay() { End(); }

}  // namespace gantry::test
