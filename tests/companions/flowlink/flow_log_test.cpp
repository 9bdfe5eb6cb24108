#include "flowlink/flow_log.h"

#include <algorithm>

#include "support/cases.h"

namespace gantry::flowlink {
namespace {

using gantry::test::Columns;

TEST(FlowLog, GivesWhatStandsInTheCases) {
  gantry::test::ExpectCases(FLOW_LOG_CASES, {{"error",
                                              [](const Columns& given) {
                                                std::string said = given[0];
                                                std::ranges::replace(said, '~', '\n');
                                                return Columns{LastErrorIn(said)};
                                              }},
                                             {"line", [](const Columns& given) {
                                                const auto line = LineOfError(
                                                    given[0], "RUNSPEC\nWELSPECS\nSCHEDULE\n");
                                                return Columns{line ? std::to_string(*line) : "-"};
                                              }}});
}

}  // namespace
}  // namespace gantry::flowlink
