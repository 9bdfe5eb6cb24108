#include "wells/static_well_data.h"

#include <gtest/gtest.h>

namespace gantry {
namespace {

TEST(StaticWells, ShowTheModeOfTheLastTakeOneForAllAndAreFoundByName) {
  StaticWellDataCollection wells;
  EXPECT_EQ(wells.OpMode(), 0);
  for (const char* name : {"A", "B", "B"}) wells.Items.emplace_back().Name = name;
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
  EXPECT_EQ(wells.Names(true), std::vector<std::string>{"B"});
}

}  // namespace
}  // namespace gantry
