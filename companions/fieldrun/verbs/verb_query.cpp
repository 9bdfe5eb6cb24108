#include <unordered_set>

#include <fmt/format.h>

#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/result_tables.h"
#include "fieldrun/run/simulator_start.h"
#include "fieldrun/verbs/verbs.h"

namespace gantry::fieldrun {

void ShowIdentity(const Session& session) {
  const DriverIdentity identity = Identify(session.api, session.trace);
  const PrintedRow row{{"name", identity.name},
                       {"description", identity.description},
                       {"interface", int64_t{identity.interfaceNumber}},
                       {"kind", static_cast<int64_t>(identity.moduleKind)}};
  if (session.options.json) {
    fmt::print(UserOutput(), "{}", ToJson(row));
  } else {
    Print({row}, false);
  }
}

namespace {

/// What each number of a case measures, and the unit that it is in there.
void ListUnitsOfCase(const Session& session) {
  const UnitSystem system = ReadCaseOf(session.options).Units();
  std::vector<PrintedRow> rows;
  for (const toml_reader::QuantityRow& row : toml_reader::Quantities()) {
    if (row.name.empty()) continue;
    rows.push_back({{"quantity", std::string(row.name)},
                    {"unit", std::string(UnitName(row.quantity, system))}});
  }
  Print(rows, session.options.json);
}

}  // namespace

void ListUnits(const Session& session) {
  if (!session.options.caseFile.empty()) return ListUnitsOfCase(session);
  std::vector<PrintedRow> rows;
  for (const DriverUnit& unit : Units(session.api, session.trace)) {
    rows.push_back(
        {{"name", unit.name}, {"code", int64_t{unit.code}}, {"class", int64_t{unit.unitClass}}});
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
  std::vector<PrintedRow> rows;
  for (const DriverWell& well : wells) {
    const WellKind kind = KindInSimulator(model, well);
    rows.push_back({{"well", well.name},
                    {"kind", std::string(KindName(kind))},
                    {"connected", connected.contains(well.name)}});
  }
  Print(rows, session.options.json);
  model.CloseSimulator();
}

}  // namespace gantry::fieldrun
