// flowlink's settings of any content are read, or refused with the file and the line.
// Reads: companions/flowlink/link_settings.cpp

#include "flowlink/link_fault.h"
#include "flowlink/link_settings.h"
#include "target.h"

using namespace gantry::flowlink;
using namespace gantry::fuzz;

FUZZ_TARGET(link_settings) {
  const std::string file = WriteFile("CASE.afi", input);
  try {
    const LinkSettings settings = ReadLinkSettings(file);
    Require(settings.secondsForQuestion >= 1 && settings.grid.days >= 0.0);
  } catch (const LinkFault& fault) {
    Require(std::string_view(fault.what()).starts_with(file + ":"));
  }
}
