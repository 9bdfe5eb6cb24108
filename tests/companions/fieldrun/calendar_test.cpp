#include "described_toml/calendar.h"

#include <gtest/gtest.h>

namespace gantry::toml_reader {
namespace {

TEST(Calendar, CountsDaysFromTheLastOfDecember1899) {
  EXPECT_EQ(DayNumber({1899, 12, 31}), 0);
  EXPECT_EQ(DayNumber({1900, 1, 1}), 1);
  EXPECT_EQ(DayNumber({2015, 1, 1}), 42004);
  EXPECT_EQ(ToText(FromDayNumber(42004)), "2015-01-01");
}

TEST(Calendar, KnowsWhichDaysThereAre) {
  EXPECT_TRUE(IsValid({2016, 2, 29}));
  EXPECT_FALSE(IsValid({2015, 2, 29}));
  EXPECT_FALSE(IsValid({2015, 13, 1}));
}

}  // namespace
}  // namespace gantry::toml_reader
