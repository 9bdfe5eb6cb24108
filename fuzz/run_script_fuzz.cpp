// A run script of any content is read, or refused with the line at fault.
// Reads: companions/fieldrun/verbs/run_script.cpp src/text/command_arguments.cpp
// Beyond: ::RunStep(

#include <algorithm>

#include "fieldrun/verbs/run_script.h"
#include "target.h"

using namespace gantry::fieldrun;
using gantry::fuzz::Require;

FUZZ_TARGET(run_script) {
  const std::string file = gantry::fuzz::TheFolder().Write("script", input);
  try {
    RunScript::Read(file);
  } catch (const CaseError& error) {
    const auto lines = std::ranges::count(input, '\n') + 1;
    Require(error.Findings.size() == 1 && error.Findings[0].line > 0);
    Require(error.Findings[0].line <= lines && !error.Findings[0].reason.empty());
  }
}
