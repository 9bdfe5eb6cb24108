#include <cerrno>

#include <fcntl.h>
#include <sys/wait.h>

#include "runfactory/launcher.h"
#include "runfactory/program.h"
#include "text/number_text.h"

namespace gantry::cluster {

namespace {

constexpr const char* kHost = "localhost";
constexpr int kPatienceMilliseconds = 3000;
constexpr off_t kLongestTail = 4096;

/// The last line that a simulator said.
std::string LastLine(int file) {
  const off_t end = ::lseek(file, 0, SEEK_END);
  const off_t begin = std::max<off_t>(0, end - kLongestTail);
  std::string tail(static_cast<size_t>(end - begin), '\0');
  const ssize_t count = ::pread(file, tail.data(), tail.size(), begin);
  tail.resize(static_cast<size_t>(std::max<ssize_t>(0, count)));
  while (!tail.empty() && tail.back() == '\n') tail.pop_back();
  const size_t line = tail.rfind('\n');
  return line == std::string::npos ? tail : tail.substr(line + 1);
}

class LocalJob : public Job {
 public:
  LocalJob(pid_t process, platform::Descriptor output)
      : process_(process), output_(std::move(output)) {}

  std::string Name() const override { return std::to_string(process_); }
  std::string Node() override { return kHost; }

  void Check() override {
    int status = 0;
    if (::waitpid(process_, &status, WNOHANG) != process_) return;
    const std::string said = output_.IsOpen() ? LastLine(output_.Number()) : "";
    throw LaunchFailed("The simulator has ended (" + HowItEnded(status) + ")" +
                       (said.empty() ? "" : ": " + said));
  }

 private:
  pid_t process_;
  platform::Descriptor output_;
};

/// Starts simulators on this machine.
class LocalLauncher : public Launcher {
 public:
  explicit LocalLauncher(const Options& options)
      : simulator_(options.simulator), mpiexec_(options.mpiexec) {}

  std::unique_ptr<Job> Start(const CaseLocation& location, const RunRequest& request,
                             uint16_t port) override {
    Program program;
    program.arguments = Prefix(request.parallel);
    AddSimulator(program.arguments, simulator_, location, request, port);
    program.directory = location.directory.Number();
    platform::Descriptor output(::openat(location.directory.Number(), LogNameOf(location).c_str(),
                                         O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC,
                                         0644));
    program.output = output.Number();
    try {
      return std::make_unique<LocalJob>(StartProgram(program), std::move(output));
    } catch (const std::runtime_error& failure) {
      throw LaunchFailed(std::string("The run factory ") + failure.what());
    }
  }

  void End(const std::string& name) override {
    const pid_t process = ReadInteger(name);
    if (process > 0) EndProgram(process, kPatienceMilliseconds);
  }

 private:
  std::vector<std::string> Prefix(int parallel) const {
    if (parallel < 2) return {};
    if (!mpiexec_.empty()) return {mpiexec_, "-np", std::to_string(parallel)};
    throw LaunchFailed("The run factory has no mpiexec for a run on " + std::to_string(parallel) +
                       " processors");
  }

  std::string simulator_;
  std::string mpiexec_;
};

}  // namespace

std::unique_ptr<Launcher> MakeLocalLauncher(const Options& options) {
  return std::make_unique<LocalLauncher>(options);
}

}  // namespace gantry::cluster
