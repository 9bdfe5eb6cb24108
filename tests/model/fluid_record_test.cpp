#include "model/fluid_record.h"

#include <gtest/gtest.h>

namespace gantry {
namespace {

TEST(FluidRecord, IsOfOneToAHundredComponents) {
  for (const auto& [count, isOne] : {std::pair{0, false}, {1, true}, {100, true}, {101, false}}) {
    EOSProperties fluid;
    fluid.componentCount = count;
    EXPECT_EQ(MakeFluidRecord(fluid) != nullptr, isOne) << count;
  }
}

}  // namespace
}  // namespace gantry
