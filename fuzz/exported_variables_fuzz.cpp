// A list of exported variables of either version. What was read is written and read again as the
// same, and every handle leads into it or nowhere.
// Reads: src/wells/exported_variables.cpp
// Beyond: ElementItem ReadValues EvaluationFailed ::Evaluate( ::Assign( ::FindByLabel( ::Remove(
// Beyond: ::FindWellParent(

#include "settings/case_archive.h"
#include "target.h"
#include "wells/exported_variables.h"

using namespace gantry;
using namespace gantry::fuzz;

namespace {

constexpr int32_t kPresentVersion = 2;

std::string Written(CExportedVariables& variables, size_t room) {
  std::string block(room, '\0');
  CaseArchive archive(block, CaseArchive::Direction::kWrite);
  variables.Serialize(archive, kPresentVersion);
  return block;
}

void Read(std::string block, int32_t version, CExportedVariables& variables) {
  CaseArchive archive(block, CaseArchive::Direction::kRead);
  variables.Serialize(archive, version);
}

}  // namespace

FUZZ_TARGET(exported_variables) {
  const int32_t version = TakeByte(input);
  CExportedVariables variables;
  // What came before a fault is there.
  MayRefuse<ArchiveError>([&] { Read(std::string(input), version, variables); });
  const size_t room = 4 * input.size() + 1024;
  const std::string written = Written(variables, room);
  CExportedVariables again;
  Read(written, kPresentVersion, again);
  Require(Written(again, room) == written);
  const size_t components = input.size() % 4;
  for (int32_t handle = -1; handle < 50; ++handle) {
    const auto entry = variables.FindEntry(handle, components);
    Require(entry.variable == nullptr || entry.element < entry.variable->EntryCount(components));
  }
  variables.HasPerComponentVariable();
}
