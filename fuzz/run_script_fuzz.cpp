// A run script of any content is read, or refused with the line at fault.
// Reads: companions/fieldrun/verbs/run_script.cpp src/text/command_arguments.cpp
// Beyond: ::RunStep(

#include "fieldrun/verbs/run_script.h"
#include "target.h"

using namespace gantry::fieldrun;
using namespace gantry::fuzz;

FUZZ_TARGET(run_script) {
  const std::string file = WriteFile("script", input);
  MayTellOfALine<CaseError>([&] { RunScript::Read(file); }, input);
}
