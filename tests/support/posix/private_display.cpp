#include "private_display.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace gantry::test {

namespace {

/// The display ends some seconds after its last client, whatever becomes of this process, and holds
/// none of its files. At once would be too soon: a stranger may come and go before this process has
/// come.
[[noreturn]] void BecomeDisplay(int numberTo) {
  const int silence = ::open("/dev/null", O_WRONLY);
  ::dup2(silence, STDOUT_FILENO);
  ::dup2(silence, STDERR_FILENO);
  ::dup2(numberTo, 3);
  ::closefrom(4);
  ::execlp("Xvfb", "Xvfb", "-displayfd", "3", "-terminate", "10", "-screen", "0", "1600x1200x24",
           "-nolisten", "tcp", nullptr);
  ::_exit(127);
}

}  // namespace

std::unique_ptr<PrivateDisplay> PrivateDisplay::Start(std::string& reason) {
  int ends[2];
  if (::pipe(ends) != 0) return nullptr;
  const pid_t process = ::fork();
  if (process == 0) BecomeDisplay(ends[1]);
  ::close(ends[1]);
  std::string number = ":";
  for (char c = 0; ::read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
  ::close(ends[0]);
  std::unique_ptr<PrivateDisplay> display(new PrivateDisplay(process));
  reason = "Xvfb gave no display";
  if (number == ":") return nullptr;
  ::setenv("DISPLAY", number.c_str(), 1);
  return display;
}

void PrivateDisplay::End() {
  if (process_ == 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = 0;
}

PrivateDisplay::~PrivateDisplay() { End(); }

}  // namespace gantry::test
