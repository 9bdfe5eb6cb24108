#include "wells/exported_variables.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "host/unit_table.h"
#include "wells/well_variable_catalogue.h"

namespace gantry::test {
namespace {

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

}  // namespace
}  // namespace gantry::test
