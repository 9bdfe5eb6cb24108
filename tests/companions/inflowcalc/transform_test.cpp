#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "scripted_reservoir.h"

namespace gantry::test {
namespace {

using Record = std::unique_ptr<_tGetSetData>;
using Well = ScriptedReservoir::Well;

constexpr double kMissing = 3.4e35;

double Liquid(const _tGetSetData& record, int row) {
  return record.oilRate[row] + record.waterRate[row];
}

/// A reservoir of one well whose region gives half of what its block promises, tested already.
class TestedWell : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(SetupIPR(nullptr, reservoir_.Handle()), 0); }

  Well& TheWell() { return reservoir_.Wells().front(); }

  /// The table and state of the well flowing at `rate`.
  void Read(double rate) {
    TheWell().rate = rate;
    TheWell().FillTable(*table_);
    TheWell().FillCurrent(*state_);
  }
  int32_t Transform() {
    return TransformIPR(reservoir_.Handle(), "P1", state_.get(), table_.get());
  }

  void ExpectTheRegionsLine() {
    for (int i = 0; i < table_->pointCount; ++i)
      EXPECT_NEAR(table_->pressure[i], TheWell().FlowingPressure(Liquid(*table_, i)), 1e-6);
  }

  ScriptedReservoir reservoir_{{{"P1", 4000.0, 10.0, 5.0}}};
  Record table_ = std::make_unique<_tGetSetData>();
  Record state_ = std::make_unique<_tGetSetData>();
};

/// Before the first step, too, when nothing is known of the well's state.
TEST_F(TestedWell, GetsTheLineOfItsDrainageRegion) {
  for (const double rate : {6000.0, 0.0}) {
    Read(rate);
    if (rate == 0.0) state_->pressure[0] = kMissing;
    if (rate == 0.0) state_->oilRate[0] = 700.0;  // of an earlier run
    const double block = table_->pressure[9];
    ASSERT_EQ(Transform(), 0);
    ASSERT_GE(table_->pointCount, 2);
    ExpectTheRegionsLine();
    EXPECT_EQ(table_->pressure[table_->pointCount - 1] > block, rate > 0.0);
  }
}

TEST_F(TestedWell, KeepsTheLimitOfTheSimulatorAtItsHighestRate) {
  Read(1000.0);
  const double limit = table_->pressure[0];
  ASSERT_EQ(Transform(), 0);
  EXPECT_LT(table_->pointCount, 10);
  EXPECT_DOUBLE_EQ(table_->pressure[0], limit);
  EXPECT_NEAR(Liquid(*table_, 0), (4000.0 - limit) * 5.0, 1e-6);
  EXPECT_NEAR(table_->gasRate[0], 0.0005 * Liquid(*table_, 0), 1e-9);
}

TEST_F(TestedWell, LosesThePointsWithAMissingNumberAndThoseBeyondItsTable) {
  Read(6000.0);
  table_->pressure[2] = kMissing;
  table_->oilRate[4] = std::numeric_limits<double>::quiet_NaN();
  table_->gasRate[9] = std::numeric_limits<double>::infinity();
  ASSERT_EQ(Transform(), 0);
  EXPECT_LE(table_->pointCount, 7);
  ExpectTheRegionsLine();
  for (const auto& [count, most] : {std::pair(-2, 0), {14, 10}}) {
    Read(6000.0);
    table_->pointCount = count;
    ASSERT_EQ(Transform(), 0);
    EXPECT_EQ(std::clamp(table_->pointCount, 0, most), table_->pointCount);
  }
  Read(6000.0);
  for (double& pressure : table_->pressure) pressure = kMissing;
  ASSERT_EQ(Transform(), 0);
  EXPECT_EQ(table_->pointCount, 0);
  EXPECT_EQ(table_->isShut, 1);
}

TEST_F(TestedWell, LeavesOtherWellsAndWhatIsNoInflowCurveUntouched) {
  AddIPRWell(reservoir_.Handle(), 1, "untested", true, true);
  for (const char* name : {"untested", "unknown", "", "P1"}) {
    Read(6000.0);
    if (name == std::string("P1")) std::swap(table_->pressure[3], table_->pressure[7]);
    const Record before = std::make_unique<_tGetSetData>(*table_);
    ASSERT_EQ(TransformIPR(reservoir_.Handle(), name, state_.get(), table_.get()), 0);
    EXPECT_EQ(std::memcmp(before.get(), table_.get(), sizeof *before), 0) << name;
  }
}

TEST(InflowLibrary, RefusesNulls) {
  const InflowHandle handle;
  const Record record = std::make_unique<_tGetSetData>();
  for (const int32_t result :
       {TransformIPR(nullptr, "P1", record.get(), record.get()),
        TransformIPR(handle.Get(), nullptr, record.get(), record.get()),
        TransformIPR(handle.Get(), "P1", nullptr, record.get()),
        TransformIPR(handle.Get(), "P1", record.get(), nullptr), SetupIPR(nullptr, nullptr),
        SetupIPR(nullptr, handle.Get()), SaveIPR(nullptr, 0), LoadIPR(nullptr, 0)}) {
    EXPECT_NE(result, 0);
  }
  AddIPRWell(handle.Get(), 0, nullptr, true, true);
  StartIPRAddWell(nullptr);
  EndIPRAddWell(nullptr);
  DestroyIPRModel(nullptr);
}

}  // namespace
}  // namespace gantry::test
