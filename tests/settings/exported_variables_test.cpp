#include "wells/exported_variables.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "host/unit_table.h"
#include "support/well_messages.h"
#include "wells/well_variable_catalogue.h"

namespace gantry::test {
namespace {

CExportedVariable& Add(CExportedVariableWellParent& parent, const std::string& label, uint32_t kind,
                       int32_t family = -1) {
  CExportedVariable& variable = parent.Variables.Add(std::make_unique<CExportedVariable>());
  variable.Key = variable.SimulatorItem = variable.Label = label;
  variable.Kind = kind;
  variable.UnitFamily = family;
  return variable;
}

CExportedVariableWellParent& Add(CExportedVariables& variables, const std::string& well) {
  auto& parent = variables.Add(std::make_unique<CExportedVariableWellParent>());
  parent.WellName = well;
  return parent;
}

CExportedVariables TwoWells() {
  CExportedVariables variables;
  auto& first = Add(variables, "W1");
  Add(first, "A", 1);
  Add(first, "B", 0);
  Add(variables, "W0");
  Add(Add(variables, "W2"), "C", 2);
  return variables;
}

TEST(ExportedVariables, AreNumberedByWellByVariableByElement) {
  CExportedVariables variables = TwoWells();
  const auto entries = [&](size_t components) {
    std::string text;
    for (int32_t handle = -1; handle < 7; ++handle) {
      const auto [well, variable, element] = variables.FindEntry(handle, components);
      if (variable == nullptr) continue;
      text += well->WellName + variable->Label + std::to_string(element) + " ";
    }
    return text;
  };
  EXPECT_EQ(entries(3), "W1A0 W1B0 W1B1 W1B2 W2C0 W2C1 ");
  EXPECT_EQ(entries(0), "W1A0 W2C0 W2C1 ");
  CExportedVariables damaged;
  Add(Add(damaged, "W"), "D", 0xFFFFFFFF);
  EXPECT_EQ(damaged.FindEntry(999, 3).element, 999u);
  EXPECT_EQ(damaged.FindEntry(1000, 3).variable, nullptr) << "the host lists them one by one";
}

TEST(ExportedVariables, AreFoundByExactTextsCopiedDeeplyAndRemovedFromTheirOwnList) {
  CExportedVariables variables = TwoWells();
  const CExportedVariables copy = variables;
  EXPECT_EQ(variables.FindWellParent("w1"), nullptr);
  CExportedVariableWellParent* parent = variables.FindWellParent("W1");
  ASSERT_NE(parent, nullptr);
  EXPECT_EQ(parent->Variables.FindByLabel("b"), nullptr);
  variables[2].Remove(*parent->Variables.FindByLabel("B"));
  EXPECT_TRUE(variables.HasPerComponentVariable()) << "another well's variable is left alone";
  parent->Remove(*parent->Variables.FindByLabel("B"));
  EXPECT_FALSE(variables.HasPerComponentVariable());
  parent->Variables[0].Label = "changed";
  EXPECT_EQ(copy[0].Variables[0].Label + copy[0].Variables[1].Label, "AB");
}

TEST(ExportedVariable, TakesWhatTheCatalogueOrTheUserSays) {
  const CExportedVariable rate(WellVariableCatalogue[0]);
  EXPECT_EQ(rate.Label + "/" + rate.SimulatorItem, "Oil production rate/OIL_PRODUCTION_RATE");
  EXPECT_EQ(rate.Code, 30801u);
  const CExportedVariable flow(CIXUserProperty{
      .Property = "FLOW", .SimulatorItem = {}, .DisplayName = "Flow", .IsScalar = 0});
  EXPECT_EQ(flow.Key + "/" + flow.SimulatorItem + "/" + flow.Label, "FLOW//Flow");
  EXPECT_EQ(flow.EntryCount(4), 4u);
  EXPECT_EQ(flow.Code, 60051u);
}

TEST(WellVariableCatalogue, HasTheCodesAndMostlyTheLabelsOfTheUnitTable) {
  std::string others;
  for (const WellVariable& row : WellVariableCatalogue) {
    const auto* const unit = std::ranges::find(HostUnitTable, row.code, &HostUnit::code);
    ASSERT_NE(unit, HostUnitTable.end()) << row.label;
    if (row.label != std::string(unit->name)) others += row.label + std::string("; ");
  }
  EXPECT_EQ(others,
            "Drawdown PI weighted; Drawdown region weighted; Gas molar rate; "
            "Oil molar rate; ");
}

TEST(ExportedVariable, IsReadAndSetElementByElementInTheDriversUnits) {
  ScriptedPeer peer;
  GreetMetricConnector(peer)
      .Answer(WellQuestion("W1", "RATE"), WellAnswer("W1", "RATE", 15.8987))
      .Answer(WellQuestion("W1", "MOLES[3]"), WellAnswer("W1", "MOLES[3]", 0.25))
      .Answer(WellConstraint("W1", "RATE", 100.0 * 0.158987))
      .Answer(WellConstraint("W1", "MOLES[1]", 0.0))
      .Answer(WellQuestion("W1", "RATE"), WellAnswer("W1", "OTHER", 1.0))
      .Expect(WellConstraint("W1", "RATE", 1.0 * 0.158987))
      .Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  CExportedVariableWellParent parent;
  parent.WellName = "W1";
  const CExportedVariable& rate = Add(parent, "RATE", 1, kLiquidRate);
  const CExportedVariable& moles = Add(parent, "MOLES", 0);
  double value = 0.0;
  std::string error;
  EXPECT_EQ(parent.Evaluate(*connector, rate, 0, value, error), 0);
  EXPECT_DOUBLE_EQ(value, 100.0);
  EXPECT_EQ(parent.Evaluate(*connector, moles, 2, value, error), 0);
  EXPECT_EQ(value, 0.25);
  EXPECT_EQ(parent.Assign(*connector, rate, 0, "100", error), 0);
  EXPECT_EQ(parent.Assign(*connector, moles, 0, "abc", error), 0);
  EXPECT_EQ(parent.Evaluate(*connector, rate, 0, value, error), 1);
  EXPECT_EQ(error,
            "Could not evaluate exported variables for W1, Unexpected answer when querying the "
            "well data.");
  EXPECT_EQ(parent.Assign(*connector, rate, 0, "1", error), 1);
  EXPECT_TRUE(error.starts_with("error: ")) << error;
}

}  // namespace
}  // namespace gantry::test
