#include <unordered_set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/platform/terminal.h"
#include "fieldrun/run/simulator_start.h"
#include "fieldrun/verbs/verbs.h"

namespace gantry::fieldrun {

void ShowIdentity(const Session& session) {
  const DriverIdentity identity = Identify(session.api, session.trace);
  const Json row{{"name", identity.name},
                 {"description", identity.description},
                 {"interface", identity.interfaceNumber},
                 {"kind", static_cast<int64_t>(identity.moduleKind)}};
  if (session.options.json) {
    fmt::print(UserOutput(), "{}", JsonText(row, 2));
  } else {
    Print({row}, false);
  }
}

namespace {

/// What each number of a case measures, and the unit that it is in there.
void ListUnitsOfCase(const Session& session) {
  const UnitSystem system = ReadCaseOf(session.options).Units();
  std::vector<Json> rows;
  for (const toml_reader::QuantityRow& row : toml_reader::Quantities()) {
    if (row.name.empty()) continue;
    rows.push_back({{"quantity", row.name}, {"unit", UnitName(row.quantity, system)}});
  }
  Print(rows, session.options.json);
}

}  // namespace

void ListUnits(const Session& session) {
  if (!session.options.caseFile.empty()) return ListUnitsOfCase(session);
  std::vector<Json> rows;
  for (const DriverUnit& unit : Units(session.api, session.trace)) {
    rows.push_back({{"name", unit.name}, {"code", unit.code}, {"class", unit.unitClass}});
  }
  Print(rows, session.options.json);
}

void ListWells(const Session& session) {
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  ApplySettings(model, caseModel, DefaultSimulator());
  StartSimulator(model, caseModel);
  const std::vector<DriverWell> wells = model.Wells();
  std::unordered_set<std::string> connected;
  for (const WellSpec& spec : caseModel.wells) {
    if (spec.connected) connected.insert(spec.name);
  }
  std::vector<Json> rows;
  for (const DriverWell& well : wells) {
    rows.push_back({{"well", well.name},
                    {"kind", KindName(KindInSimulator(model, well))},
                    {"connected", connected.contains(well.name)}});
  }
  Print(rows, session.options.json);
  model.CloseSimulator();
}

}  // namespace gantry::fieldrun
