#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/run/schedule.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

/// What the command line says, with what the run remembers in place of the rest.
Options OptionsOf(const Options& given, const std::string& folder, const LeftRun& left) {
  Options options = given;
  options.caseFile = left.caseFile;
  options.output = folder;
  if (options.simulator.empty()) options.simulator = left.program;
  return options;
}

void RefuseChangedFiles(const LeftRun& left, const std::string& folder) {
  const std::vector<std::string> changed = ChangedFiles(left);
  if (changed.empty()) return;
  throw CommandLineError(
      fmt::format("{} {} not what the run in {} has begun with: put {} back, or run the case anew",
                  fmt::join(changed, ", "), changed.size() == 1 ? "is" : "are", folder,
                  changed.size() == 1 ? "it" : "them"));
}

ResumedRun ReadResumedRun(const std::string& folder) {
  ResumedRun run{ReadRunFile(folder), ReadResumeFile(folder)};
  if (run.stored.start.id != run.left.memory.id) {
    throw CommandLineError(
        fmt::format("{} in {} is of another run than {}", kResumeFile, folder, kRunFile));
  }
  auto& warnings = run.stored.warnings;
  warnings.resize(std::min(warnings.size(), run.left.warnings));
  return run;
}

/// Why there is nothing to go on with; empty where there is.
std::string WhyComplete(const ResumedRun& run, const Schedule& schedule) {
  const auto& end = run.stored.end;
  if (end && end->endedBySimulator) {
    return fmt::format("the simulator has come to its own end after {}",
                       Counted(end->steps, "step"));
  }
  const size_t steps = schedule.lengths.size();
  if (run.left.memory.steps < steps) return "";
  return fmt::format("the run is complete, with {}", Counted(steps, "step"));
}

/// For a run that was killed behind its last step.
void CloseRun(const ResumedRun& run, const CaseModel& caseModel, const Options& options) {
  RunFile file(options.output, caseModel);
  file.GoOn(run.stored.warnings);
  file.Started(run.stored.start);
  file.Ended({run.left.memory.steps, false, "", run.stored.warnings});
  ReportRun(options);
}

}  // namespace

void ResumeCase(const Session& session) {
  const std::string folder =
      platform::NameOf(fs::absolute(platform::PathOf(session.options.results)).lexically_normal());
  if (ResultFolder::IsBeingWritten(folder)) {
    throw CommandLineError("The run in " + folder + " still goes on");
  }
  ResumedRun run = ReadResumedRun(folder);
  const RunMemory& memory = run.left.memory;
  RefuseChangedFiles(run.left, folder);
  const Options options = OptionsOf(session.options, folder, run.left);
  const CaseModel caseModel = ReadCaseOf(options);
  if (caseModel.simulator.IsOnCluster()) {
    throw CommandLineError("A run on a cluster can't be resumed: its simulator keeps nothing here");
  }
  const Schedule schedule = PlanSteps(caseModel, memory.start);
  if (const std::string why = WhyComplete(run, schedule); !why.empty()) {
    if (!run.stored.end || !run.stored.end->failure.empty()) CloseRun(run, caseModel, options);
    fmt::print(UserOutput(), "{}: {}\n", folder, why);
    return;
  }
  run.simulatorDays = memory.simulatorDays + schedule.DaysBefore(memory.steps);
  ConductRun({options, session.api, session.trace}, caseModel, &run);
}

}  // namespace gantry::fieldrun
