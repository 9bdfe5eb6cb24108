#include "fieldrun/platform/terminal.h"
#include "fieldrun/verbs/options.h"
#include "fieldrun/verbs/verbs.h"

int main(int argc, char** argv) {
  gantry::fieldrun::IgnoreBrokenPipes();
  const auto parsed = gantry::fieldrun::ParseCommandLine(argc, argv);
  if (const int* status = std::get_if<int>(&parsed)) return *status;
  return gantry::fieldrun::RunVerb(std::get<gantry::fieldrun::Options>(parsed));
}
