#include "fieldrun/results/run_results.h"

#include <stdexcept>

#include "fieldrun/case/input_file.h"
#include "fieldrun/platform/program_output.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/results/report_html.h"
#include "platform/dynamic_library.h"
#include "platform/files.h"

namespace gantry::fieldrun {

RunResults::RunResults(const CaseModel& model)
    : folder_(model.general.output),
      file_(model.general.output, model),
      tables_(model.general.output, model.Units()),
      resume_(model.general.output, model) {}

void RunResults::Started(const RunStart& start) {
  program_ = start.program;
  const auto begin = [&] {
    file_.Started(start);
    tables_.Started(start);
  };
  start.doneSteps > 0 ? begin() : folder_.ReplaceBy(begin);
}

void RunResults::StepDone(const StepRecord& record) {
  tables_.StepDone(record);
  file_.StepDone(record);
}

void WriteReport(const CaseModel& model, const RunHistory& history) {
  WriteWhole(model.general.output + "/" + kReportFile, ComposeReport(model, history));
}

void WriteSummary(const CaseModel& model) {
  const std::string program = platform::ModuleFolder() + platform::ProgramFileName("fieldsummary");
  if (!IsFile(program)) return;
  if (OutputOf(program, {model.general.output}).status == 0) return;
  throw std::runtime_error("The summary files couldn't be written");
}

}  // namespace gantry::fieldrun
