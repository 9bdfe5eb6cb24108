// The block of a case, as a host gives it back. What was read is written and read again as the
// same; a block of a later version changes nothing.
// Reads: src/case/case_data.cpp src/settings/case_archive.cpp

#include "case/case_data.h"
#include "settings/link_settings.h"
#include "target.h"
#include "wells/static_well_data.h"

using namespace gantry;
using namespace gantry::fuzz;

namespace {

struct Case {
  CaseDataOutcome Read(std::string block) {
    return ReadCaseData(block, {settings, wells, componentNames});
  }
  std::string Written(size_t room) {
    std::string block(room, '\0');
    const CaseData data{settings, wells, componentNames};
    Require(WriteCaseData(block, data) == CaseDataOutcome::kDone);
    return block;
  }

  LinkSettings settings;
  StaticWellDataCollection wells;
  std::vector<std::string> componentNames;
};

}  // namespace

FUZZ_TARGET(case_block) {
  const size_t room = 4 * input.size() + 1024;
  Case read;
  const CaseDataOutcome outcome = read.Read(std::string(input));
  const std::string written = read.Written(room);
  if (outcome == CaseDataOutcome::kTooNew) Require(written == Case().Written(room));
  Case again;
  Require(again.Read(written) == CaseDataOutcome::kDone);
  Require(again.Written(room) == written);
}
