// A case file of any content: what is wrong is told with its line. A case without a fault takes
// another number of processors and another control for its producers, and stays one.
// Reads: companions/fieldrun/case/case_reader.cpp companions/fieldrun/case/case_check.cpp
// Reads: companions/fieldrun/case/case_writer.cpp companions/described_toml/described_table.cpp
// Beyond: ReadCase(

#include "fieldrun/case/case_reader.h"
#include "fieldrun/case/case_writer.h"
#include "target.h"

using namespace gantry::fieldrun;
using namespace gantry::fuzz;

namespace {

CheckedCase Check(std::string_view text) { return ReadAndCheckCase(WriteFile("case.toml", text)); }

void CheckControl(const std::string& text, const CaseModel& model) {
  MayTellOfALine<CaseError>(
      [&] { Require(!Check(WithControl(text, model, "\"gas\"")).HasErrors()); }, text);
}

}  // namespace

FUZZ_TARGET(case_file) {
  const std::string text(input);
  const CheckedCase read = Check(text);
  for (const Finding& finding : read.findings)
    Require(!finding.reason.empty() && finding.line >= 0);
  if (read.HasErrors()) return;
  const CheckedCase changed = Check(WithSimulatorKeys(text, {{"parallel", "3"}}));
  Require(!changed.HasErrors() && changed.model.simulator.parallel == 3);
  CheckControl(text, read.model);
}
