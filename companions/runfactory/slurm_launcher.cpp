#include <algorithm>
#include <cctype>
#include <chrono>
#include <thread>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fcntl.h>

#include "runfactory/launcher.h"
#include "runfactory/program.h"

namespace gantry::cluster {

namespace {

constexpr int kCommandSeconds = 30;
constexpr std::chrono::milliseconds kRound{500};
/// How often a job is looked at before it is cancelled, and then until it has left its nodes.
constexpr int kPatienceRounds = 10;
constexpr int kCancelRounds = 60;

std::string Trimmed(const std::string& text) {
  return boost::algorithm::trim_copy_if(text, boost::algorithm::is_any_of(" \n"));
}

std::string FindCommand(const std::string& name) {
  const std::string path = FindProgram(name);
  if (path.empty()) throw LaunchFailed("The run factory finds no " + name + " in its path");
  return path;
}

/// Runs a command of Slurm; its last line of output is the reason when it fails.
std::string AskSlurm(std::vector<std::string> command) {
  const std::string name = command.front();
  command.front() = FindCommand(name);
  try {
    const Outcome outcome = RunProgram(command, kCommandSeconds);
    std::string output = Trimmed(outcome.output);
    if (outcome.exitStatus == 0) return output;
    throw LaunchFailed("Slurm's " + name + " failed: " + output.substr(output.rfind('\n') + 1));
  } catch (const LaunchFailed&) {
    throw;
  } catch (const std::runtime_error& failure) {
    throw LaunchFailed(std::string("The run factory ") + failure.what());
  }
}

struct JobState {
  std::string state;  ///< empty when Slurm knows the job no longer
  std::string node;
};

JobState StateOf(const std::string& job) {
  const std::string line =
      AskSlurm({"squeue", "--noheader", "--states=all", "--jobs=" + job, "--format=%T|%B"});
  const size_t bar = line.find('|');
  if (bar == std::string::npos) return {};
  return {line.substr(0, bar), Trimmed(line.substr(bar + 1))};
}

bool IsWaiting(const std::string& state) {
  return state == "PENDING" || state == "CONFIGURING" || state == "REQUEUED";
}

bool IsAlive(const std::string& state) {
  return IsWaiting(state) || state == "RUNNING" || state == "COMPLETING" || state == "SUSPENDED";
}

/// The case's name as a job's name: what Slurm's listings show without quoting.
std::string JobNameOf(std::string name) {
  std::replace_if(
      name.begin(), name.end(),
      [](unsigned char character) {
        return std::isalnum(character) == 0 && character != '.' && character != '-';
      },
      '_');
  return name;
}

/// A path in which Slurm replaces no patterns.
std::string Literal(const std::string& path) {
  std::string literal;
  for (const char character : path) {
    literal += character;
    if (character == '%') literal += '%';
  }
  return literal;
}

class SlurmJob : public Job {
 public:
  explicit SlurmJob(std::string number) : number_(std::move(number)) {}

  std::string Name() const override { return number_; }

  std::string Node() override {
    const JobState now = StateOf(number_);
    if (IsWaiting(now.state)) return {};
    if (now.state == "RUNNING") return now.node;
    Fail(now.state);
  }

  void Check() override {
    const JobState now = StateOf(number_);
    if (!IsAlive(now.state)) Fail(now.state);
  }

 private:
  [[noreturn]] void Fail(const std::string& state) const {
    throw LaunchFailed("The simulator's job " + number_ + " has ended" +
                       (state.empty() ? "" : " (" + state + ")"));
  }

  std::string number_;
};

/// Starts simulators through Slurm's own commands.
class SlurmLauncher : public Launcher {
 public:
  explicit SlurmLauncher(const Options& options)
      : simulator_(options.simulator), extra_(options.slurmOptions) {}

  std::unique_ptr<Job> Start(const CaseLocation& location, const RunRequest& request,
                             uint16_t port) override {
    const ScriptFile script;
    std::vector<std::string> command = {
        "sbatch",
        "--parsable",
        "--no-requeue",
        "--job-name=" + JobNameOf(location.baseName),
        "--ntasks=" + std::to_string(std::max(1, request.parallel)),
        "--chdir=" + location.path,
        "--output=" + Literal(location.path + "/" + LogNameOf(location)),
    };
    command.insert(command.end(), extra_.begin(), extra_.end());
    command.push_back(script.Path());
    AddSimulator(command, simulator_, location, request, port);
    const std::string answer = AskSlurm(command);
    const std::string number = answer.substr(0, answer.find(';'));
    const bool isNumber = !number.empty() && std::all_of(number.begin(), number.end(), ::isdigit);
    if (!isNumber) throw LaunchFailed("Slurm's sbatch gave no job number: " + answer);
    return std::make_unique<SlurmJob>(number);
  }

  void End(const std::string& name) override {
    if (EndsWithin(name, kPatienceRounds)) return;
    AskSlurm({"scancel", name});
    EndsWithin(name, kCancelRounds);
  }

 private:
  /// The batch script in a file of its own, which sbatch has read by the time this dies.
  class ScriptFile {
   public:
    ScriptFile() {
      // Its arguments are the simulator's command, which it runs as one step.
      const std::string text = "#!/bin/sh\nexec '" + FindCommand("srun") + "' \"$@\"\n";
      const char* folder = std::getenv("TMPDIR");
      path_ = std::string(folder != nullptr ? folder : "/tmp") + "/runfactory-XXXXXX";
      const platform::Descriptor file(::mkostemp(path_.data(), O_CLOEXEC));
      const bool isWritten = file.IsOpen() && ::write(file.Number(), text.data(), text.size()) ==
                                                  static_cast<ssize_t>(text.size());
      if (!isWritten) throw LaunchFailed("The run factory cannot write its batch script");
    }
    ~ScriptFile() { ::unlink(path_.c_str()); }
    ScriptFile(const ScriptFile&) = delete;
    ScriptFile& operator=(const ScriptFile&) = delete;

    const std::string& Path() const { return path_; }

   private:
    std::string path_;
  };

  static bool EndsWithin(const std::string& job, int rounds) {
    for (int round = 0; round < rounds; ++round) {
      if (!IsAlive(StateOf(job).state)) return true;
      std::this_thread::sleep_for(kRound);
    }
    return false;
  }

  std::string simulator_;
  std::vector<std::string> extra_;
};

}  // namespace

std::unique_ptr<Launcher> MakeSlurmLauncher(const Options& options) {
  return std::make_unique<SlurmLauncher>(options);
}

}  // namespace gantry::cluster
