#include <cstdio>
#include <exception>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "runfactory/factory.h"
#include "runfactory/log.h"
#include "runfactory/options.h"
#include "text/failure_text.h"

namespace {

/// A service started without them would find its own sockets under their numbers, and leave those
/// to its sessions.
void EnsureStandardDescriptors() {
  for (int opened = 0; opened >= 0 && opened <= STDERR_FILENO;)
    opened = ::open("/dev/null", O_RDWR);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace gantry::cluster;
  EnsureStandardDescriptors();
  Options options;
  int exitStatus = 0;
  if (!ParseOptions(argc, argv, options, exitStatus)) return exitStatus;
  try {
    const Log log = options.logFile.empty() ? Log() : Log(options.logFile);
    for (const std::string& missing : MissingDirectories(options)) {
      log.Write("no case can be opened below " + missing + ": there is no such directory");
    }
    Factory factory(options, log);
    log.Write("starts simulators by " + options.simulator);
    const std::string where = fmt::format("listens on {}:{}", options.address, factory.Port());
    log.Write(where);
    std::puts(("runfactory " + where).c_str());
    std::fflush(stdout);
    factory.Run();
    log.Write("has stopped");
  } catch (const std::exception& failure) {
    std::fputs(("runfactory: " + gantry::FailureText(failure, "the service") + "\n").c_str(),
               stderr);
    return 1;
  }
  return 0;
}
