#include <filesystem>
#include <set>

#include <fmt/format.h>

#include "fieldrun/driver/simulator_warnings.h"
#include "fieldrun/platform/interruption.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/results/result_reader.h"
#include "fieldrun/results/run_file.h"
#include "fieldrun/results/run_json.h"
#include "fieldrun/results/run_results.h"
#include "fieldrun/results/watched_report.h"
#include "fieldrun/run/coupled_run.h"
#include "fieldrun/run/simulator_end.h"
#include "fieldrun/run/simulator_start.h"
#include "fieldrun/verbs/progress.h"
#include "fieldrun/verbs/run_script.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"
#include "text/failure_text.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOfSimulator = "simulator";

// Passes what happens in a run on to all who follow it.
class Listeners : public RunListener {
 public:
  explicit Listeners(std::vector<RunListener*> all) : all_(std::move(all)) {}

  void Started(const RunStart& start) override { Tell(&RunListener::Started, start); }
  void StepBegins(size_t step, const Date& date) override {
    Tell(&RunListener::StepBegins, step, date);
  }
  void StepDone(const StepRecord& record) override { Tell(&RunListener::StepDone, record); }
  void Timed(std::optional<size_t> step, const StepTimes& times) override {
    Tell(&RunListener::Timed, step, times);
  }
  void Remembered(const RunMemory& memory) override { Tell(&RunListener::Remembered, memory); }
  void Ended(const RunEnd& end) override { Tell(&RunListener::Ended, end); }
  void Notice(const std::string& text) override { Tell(&RunListener::Notice, text); }
  void Warned(const RunWarning& warning) override { Tell(&RunListener::Warned, warning); }

 private:
  template <class Event, class... Parts>
  void Tell(Event event, const Parts&... parts) {
    for (RunListener* listener : all_) (listener->*event)(parts...);
  }

  std::vector<RunListener*> all_;
};

// Tells the steps that a run has done.
class DoneSteps : public RunListener {
 public:
  DoneSteps(RunHistory& history, size_t steps) : history_(history), steps_(steps) {}

  void Started(const RunStart& start) override { history_.Started(start); }
  void StepDone(const StepRecord& record) override {
    if (record.step < steps_) history_.StepDone(record);
  }
  void Timed(std::optional<size_t> step, const StepTimes& times) override {
    if (!step || *step < steps_) history_.Timed(step, times);
  }
  void Warned(const RunWarning& warning) override { history_.Warned(warning); }

 private:
  RunHistory& history_;
  size_t steps_;
};

/// Reads what is done into the history, and gives the simulator's warnings that it knows.
std::set<std::string> TakeUp(const ResumedRun& resumed, const std::string& folder,
                             RunHistory& history) {
  DoneSteps done(history, resumed.left.memory.steps);
  ReplayRun(folder, resumed.stored, done);
  std::set<std::string> known;
  for (const RunWarning& warning : resumed.stored.warnings) {
    if (warning.topic == kOfSimulator) known.insert(warning.text);
  }
  return known;
}

std::string DescribeEnd(const RunEnd& end) {
  std::string text =
      fmt::format("the run was ended by the user after {}", Counted(end.steps, "step"));
  if (!end.failure.empty()) text += "; the next one failed: " + end.failure;
  return text;
}

Date DateReached(const RunHistory& history) {
  const double days = history.field.empty() ? 0.0 : history.field.back().endDays;
  return FromDayNumber(DayNumber(history.start.start) + static_cast<int>(days));
}

}  // namespace

void RunCase(const Session& session) { ConductRun(session, ReadCaseOf(session.options), nullptr); }

void ConductRun(const Session& session, const CaseModel& caseModel, const ResumedRun* resumed) {
  const Options& options = session.options;
  const RunScript script = options.script.empty() ? RunScript() : RunScript::Read(options.script);
  const DriverIdentity identity = Identify(session.api, session.trace);
  Units(session.api, session.trace);
  DriverModel model(session.api, session.trace);
  model.SetLabel(caseModel.simulator.label.empty() ? caseModel.general.title
                                                   : caseModel.simulator.label);
  model.SetStoreFile(caseModel.simulator.storeFile, true);
  ApplySettings(model, caseModel, DefaultSimulator());

  RunResults results(caseModel);
  ShareWithSimulator(caseModel,
                     resumed == nullptr ? std::nullopt : std::optional(resumed->simulatorDays));
  const bool showsTable = !options.quiet && !options.json;
  Progress progress(caseModel.Units(), showsTable, !options.quiet && IsTerminal());
  RunJson json(caseModel);
  RunHistory history;
  std::set<std::string> known;
  if (resumed != nullptr) {
    results.GoOn(resumed->stored.warnings);
    known = TakeUp(*resumed, caseModel.general.output, history);
  }
  std::vector<RunListener*> all{&history, &progress, &results};
  std::optional<WatchedReport> watched;
  if (options.watch) all.push_back(&watched.emplace(caseModel, history));
  if (options.json) all.push_back(&json);
  Listeners listeners(std::move(all));
  CoupledRun run(caseModel, model, listeners);
  // The simulator has shown its warnings by itself: the report and the run's file take them down.
  SimulatorWarnings ofSimulator(platform::PathOf(caseModel.general.output));
  const auto takeDownWarnings = [&] {
    ofSimulator.TellNew([&](const std::string& text) {
      if (!known.insert(text).second) return;
      const RunWarning warning{kOfSimulator, "", DateReached(history), text};
      history.Warned(warning);
      results.Warned(warning);
    });
  };
  run.atStep = [&](size_t step) {
    takeDownWarnings();
    progress.Aside([&] { script.RunStep(step + 1, model, UserOutput()); });
  };
  run.atEnd = takeDownWarnings;
  run.isInterrupted = IsInterrupted;
  TakeInterruptions();
  SimulatorEnd simulatorEnd;
  if (options.watch && showsTable) {
    fmt::print(UserOutput(), "To be watched in {}/{}\n", caseModel.general.output, kReportFile);
  }
  const std::string driver = fmt::format("{}, {}", identity.name, identity.description);
  const auto mostSteps = static_cast<size_t>(options.steps);
  if (resumed == nullptr) {
    run.Start(driver, mostSteps);
  } else {
    run.Resume(driver, mostSteps, resumed->left.memory, resumed->stored.warnings);
  }
  RunEnd end = run.Run();
  try {
    WriteReport(caseModel, history);
    WriteSummary(caseModel);
  } catch (const std::exception& failure) {
    if (end.failure.empty())
      end.failure = FailureText(failure, "the report");  // a full disk has been told of already
  }
  if (end.endedByUser) {
    throw EndedByUser(DescribeEnd(end) + "; results: " + caseModel.general.output);
  }
  if (!end.failure.empty()) throw DriverFailure(end.failure);
  if (!caseModel.simulator.IsOnCluster()) simulatorEnd.Await(IsInterrupted);
  if (showsTable) fmt::print(UserOutput(), "Results: {}\n", caseModel.general.output);
}

bool ReportRun(const Options& options) {
  const std::string folder =
      platform::NameOf(fs::absolute(platform::PathOf(options.results)).lexically_normal());
  StoredRun run = ReadRunFile(folder);
  RunHistory history;
  history.isGoingOn = !run.end && ResultFolder::IsBeingWritten(folder);
  ReplayRun(folder, run, history);
  run.model.general.output = folder;
  WriteReport(run.model, history);
  WriteSummary(run.model);
  fmt::print(UserOutput(), "{}/{}\n", folder, kReportFile);
  return true;
}

}  // namespace gantry::fieldrun
