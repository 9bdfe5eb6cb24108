#include "wells/exported_variables.h"

#include <array>
#include <memory>

#include <gtest/gtest.h>

#include "client/connector_base.h"
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
  struct Case {
    size_t components;
    int32_t handle;
    std::string label;
    uint32_t element;
  };
  const Case cases[] = {{3, 0, "A", 0}, {3, 1, "B", 0}, {3, 3, "B", 2},        {3, 4, "C", 0},
                        {3, 5, "C", 1}, {3, 6, "", 0},  {3, -1, "", 0},        {0, 1, "C", 0},
                        {0, 2, "C", 1}, {0, 3, "", 0},  {0, 2147483647, "", 0}};
  for (const Case& c : cases) {
    const CExportedVariables::Entry entry = variables.FindEntry(c.handle, c.components);
    EXPECT_EQ(entry.variable == nullptr ? "" : entry.variable->Label, c.label) << c.handle;
    EXPECT_EQ(entry.element, c.element) << c.handle;
    if (entry.variable != nullptr) {
      EXPECT_EQ(entry.wellParent->Variables.FindByLabel(c.label), entry.variable);
    }
  }
  CExportedVariables damaged;
  Add(Add(damaged, "W"), "D", 0xFFFFFFFF);
  EXPECT_EQ(damaged.FindEntry(999, 3).element, 999u);
  EXPECT_EQ(damaged.FindEntry(1000, 3).variable, nullptr) << "the host lists them one by one";
}

TEST(ExportedVariables, AreFoundByExactTextsAndRemovedFromTheirOwnList) {
  CExportedVariables variables = TwoWells();
  EXPECT_TRUE(variables.HasPerComponentVariable());
  EXPECT_EQ(variables.FindWellParent("w1"), nullptr);
  CExportedVariableWellParent* parent = variables.FindWellParent("W1");
  ASSERT_NE(parent, nullptr);
  EXPECT_EQ(parent->Variables.FindByLabel("b"), nullptr);
  variables[2].Remove(*parent->Variables.FindByLabel("B"));
  EXPECT_TRUE(variables.HasPerComponentVariable()) << "another well's variable is left alone";
  parent->Remove(*parent->Variables.FindByLabel("B"));
  EXPECT_FALSE(variables.HasPerComponentVariable());
}

TEST(ExportedVariables, CopyDeeply) {
  const CExportedVariables variables = TwoWells();
  CExportedVariables copy = variables;
  copy[0].Variables[0].Label = "changed";
  copy[0].Variables.TakeOut(1);
  EXPECT_EQ(variables[0].Variables[0].Label, "A");
  EXPECT_EQ(variables[0].Variables.Size(), 2u);
}

TEST(ExportedVariable, TakesWhatTheCatalogueOrTheUserSays) {
  const CExportedVariable rate(WellVariableCatalogue[0]);
  EXPECT_EQ(rate.Label, "Oil production rate");
  EXPECT_EQ(rate.SimulatorItem, "OIL_PRODUCTION_RATE");
  EXPECT_EQ(rate.Code, 30801u);
  CIXUserProperty property;
  property.Property = "FLOW";
  property.DisplayName = "Flow";
  property.IsScalar = 0;
  const CExportedVariable flow(property);
  EXPECT_EQ(flow.Key + "/" + flow.SimulatorItem + "/" + flow.Label, "FLOW//Flow");
  EXPECT_EQ(flow.EntryCount(4), 4u);
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
  EXPECT_EQ(error, "");
  EXPECT_EQ(parent.Evaluate(*connector, rate, 0, value, error), 1);
  EXPECT_EQ(error,
            "Could not evaluate exported variables for W1, Unexpected answer when querying the "
            "well data.");
  EXPECT_EQ(parent.Assign(*connector, rate, 0, "1", error), 1);
  EXPECT_TRUE(error.starts_with("error: ")) << error;
}

}  // namespace
}  // namespace gantry::test
