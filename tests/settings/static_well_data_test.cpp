#include "wells/static_well_data.h"

#include <gtest/gtest.h>

#include "wells/source.h"

namespace gantry {
namespace {

using Names = std::vector<std::string>;

StaticWellDataCollection WellsNamed(const Names& names) {
  StaticWellDataCollection wells;
  for (const std::string& name : names) wells.Items.emplace_back().Name = name;
  return wells;
}

TEST(StaticWells, ShowTheModeOfTheLastTakeOneForAllAndAreFoundByName) {
  StaticWellDataCollection wells;
  EXPECT_EQ(wells.OpMode(), 0);
  wells = WellsNamed({"A", "B", "B"});
  wells.Items[2].OpMode = 2;
  wells.Items[2].Connected = true;
  EXPECT_EQ(wells.OpMode(), 2);
  wells.SetOpMode(-1);
  EXPECT_EQ(wells.Items[2].OpMode, 2);
  wells.SetOpMode(3);
  EXPECT_EQ(wells.Items[1].OpMode, 3);
  int32_t index = 9;
  EXPECT_EQ(wells.Find("B", &index), &wells.Items[1]);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(wells.Find("b", &index), nullptr);
  EXPECT_EQ(index, -1);
  EXPECT_EQ(wells.Names(true), Names{"B"});
}

TEST(StaticWells, KeepOnlyTheModeOfTheirNameWhenTheyAreReadAgain) {
  StaticWellDataCollection wells = WellsNamed({"A", "B", "B"});
  for (StaticWellData& well : wells.Items) well.Connected = true;
  wells.Items[1].OpMode = 2;
  wells.Items[2].OpMode = 3;
  SourceList sources;
  for (const char* name : {"NEW", "B", "A"}) {
    Source& source = sources.Items.emplace_back();
    source.Name = name;
    source.SourceType = kInjector;
  }
  wells.RebuildFrom(sources);
  ASSERT_EQ(wells.Names(false), (Names{"NEW", "B", "A"}));
  for (const StaticWellData& well : wells.Items) {
    EXPECT_FALSE(well.Connected);
    EXPECT_EQ(well.SourceType, kInjector);
    EXPECT_EQ(well.OpMode, well.Name == "B" ? 2 : 0) << "the first of a name counts";
  }
}

TEST(StaticWells, AgreeWithTheSimulatorOrTellTheFirstDifference) {
  const std::pair<Names, std::string> differences[] = {
      {{"B", "A"}, "none"},
      {{"A"},
       "The number of wells in this simulation deck has changed: 2 (in file) -> 1 (just read from "
       "simulator)"},
      {{"A", "b"},
       "Well 'b' is not known in the Tessel model - refresh the model by starting the simulation "
       "from the data entry screen"},
      {{"A", "A"},
       "Well 'B' from the Tessel model can not be found in the simulation model which has just "
       "been run"},
  };
  for (const auto& [simulators, difference] : differences) {
    EXPECT_EQ(ReconcileWells(WellsNamed({"A", "B"}), WellsNamed(simulators)).value_or("none"),
              difference);
  }
}

}  // namespace
}  // namespace gantry
