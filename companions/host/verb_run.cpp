#include <filesystem>

#include <fmt/format.h>

#include "host/coupled_run.h"
#include "host/interruption.h"
#include "host/output_file.h"
#include "host/progress.h"
#include "host/report_html.h"
#include "host/result_tables.h"
#include "host/run_script.h"
#include "host/terminal.h"
#include "host/verbs.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

// Passes what happens in a run on to all who follow it.
class Listeners : public RunListener {
 public:
  explicit Listeners(std::vector<RunListener*> all) : all_(std::move(all)) {}

  void Started(const RunStart& start) override {
    for (RunListener* listener : all_) listener->Started(start);
  }
  void StepBegins(size_t step) override {
    for (RunListener* listener : all_) listener->StepBegins(step);
  }
  void StepDone(const StepRecord& record) override {
    for (RunListener* listener : all_) listener->StepDone(record);
  }
  void Ended(const RunEnd& end) override {
    for (RunListener* listener : all_) listener->Ended(end);
  }
  void Notice(const std::string& text) override {
    for (RunListener* listener : all_) listener->Notice(text);
  }
  void Warned(const RunWarning& warning) override {
    for (RunListener* listener : all_) listener->Warned(warning);
  }

 private:
  std::vector<RunListener*> all_;
};

std::string DescribeEnd(const RunEnd& end) {
  std::string text =
      fmt::format("the run was ended by the user after {}", Counted(end.steps, "step"));
  if (!end.failure.empty()) text += "; the next one failed: " + end.failure;
  return text;
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(platform::PathOf(folder), error);
  if (error) {
    throw std::runtime_error(
        fmt::format("The folder {} can't be made: {}", folder, error.message()));
  }
}

}  // namespace

void RunCase(const Session& session) {
  const Options& options = session.options;
  const CaseModel caseModel = ReadCaseOf(options);
  const RunScript script = options.script.empty() ? RunScript() : RunScript::Read(options.script);
  const DriverIdentity identity = Identify(session.api, session.trace);
  Units(session.api, session.trace);
  DriverModel model(session.api, session.trace);
  model.SetLabel(caseModel.simulator.label.empty() ? caseModel.general.title
                                                   : caseModel.simulator.label);
  model.SetStoreFile(caseModel.simulator.storeFile, true);
  ApplySettings(model, caseModel, DefaultSimulator());

  MakeFolder(caseModel.general.output);
  ResultTables tables(caseModel.general.output, caseModel.Units());
  Progress progress(caseModel.Units(), !options.quiet, !options.quiet && IsTerminal());
  RunHistory history;
  Listeners listeners({&tables, &history, &progress});
  CoupledRun run(caseModel, model, listeners);
  run.atStep = [&](size_t step) { script.RunStep(step + 1, model, UserOutput()); };
  run.isInterrupted = IsInterrupted;
  TakeInterruptions();
  run.Start(fmt::format("{}, {}", identity.name, identity.description),
            static_cast<size_t>(options.steps));
  const RunEnd end = run.Run();
  OutputFile report(caseModel.general.output + "/report.html");
  report.Write(ComposeReport(caseModel, history));
  report.Finish();
  if (end.endedByUser) {
    throw EndedByUser(DescribeEnd(end) + "; results: " + caseModel.general.output);
  }
  if (!end.failure.empty()) throw DriverFailure(end.failure);
  if (!options.quiet) fmt::print(UserOutput(), "Results: {}\n", caseModel.general.output);
}

}  // namespace gantry::fieldrun
