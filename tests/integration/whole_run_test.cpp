// Whole runs of the module with the reference simulator, each step in the host's own order.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "integration/real_run.h"

namespace gantry::test {
namespace {

using fieldrun::DriverControl;
using fieldrun::DriverInflow;
using fieldrun::DriverModel;
using fieldrun::DriverWell;
using fieldrun::InflowPoint;

constexpr double kStepDays = 30.0;
constexpr double kEndDays = 100.0;
constexpr size_t kOperatingPoint = 4;

struct Setting {
  std::string version;
  std::string example;
};

void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.example << " with " << setting.version;
}

class WholeRun : public ::testing::TestWithParam<Setting> {};

double MainRate(const InflowPoint& point, bool isGasWell) {
  return isGasWell ? point.rates.gas : point.rates.Liquid();
}

bool IsGasWell(const DriverInflow& inflow) {
  const auto& rates = inflow.points.front().rates;
  return rates.Liquid() <= 0.5 || rates.gas * 1e6 / rates.Liquid() > 10000.0;
}

/// What a reservoir engineer takes for an inflow curve: the more rate, the more drawdown.
void ExpectCurve(const DriverInflow& inflow, const DriverWell& well) {
  ASSERT_EQ(inflow.points.size(), 10u) << well.name;
  const bool isGasWell = IsGasWell(inflow);
  EXPECT_GT(MainRate(inflow.points.front(), isGasWell), 0.0) << well.name;
  for (size_t i = 1; i < inflow.points.size(); ++i) {
    const InflowPoint& higher = inflow.points[i - 1];
    const InflowPoint& lower = inflow.points[i];
    EXPECT_GE(MainRate(higher, isGasWell), MainRate(lower, isGasWell)) << well.name << " " << i;
    if (well.isProducer)
      EXPECT_LE(higher.pressure, lower.pressure) << well.name << " " << i;
    else
      EXPECT_GE(higher.pressure, lower.pressure) << well.name << " " << i;
  }
}

/// One step: reads, checks the tables, sets every well to the middle of its own, and runs on. Gives
/// the rate that each well was told to keep.
std::vector<double> PlanStep(DriverModel& model, const std::vector<DriverWell>& wells,
                             int components) {
  std::vector<double> targets;
  for (size_t i = 0; i < wells.size(); ++i) {
    const DriverInflow inflow = model.Inflow(static_cast<int>(i));
    ExpectCurve(inflow, wells[i]);
    DriverControl control;
    control.well = static_cast<int>(i);
    control.point = inflow.points.at(kOperatingPoint);
    control.composition.assign(static_cast<size_t>(components), 0.0);
    if (components > 0) control.composition.front() = 1.0;
    model.SetControl(control, inflow, components);
    targets.push_back(MainRate(control.point, IsGasWell(inflow)));
  }
  return targets;
}

void ExpectRates(DriverModel& model, const std::vector<DriverWell>& wells,
                 const std::vector<double>& targets) {
  for (size_t i = 0; i < wells.size(); ++i) {
    const DriverInflow inflow = model.Inflow(static_cast<int>(i));
    EXPECT_NEAR(MainRate(inflow.current, IsGasWell(inflow)), targets[i], 1e-3 * targets[i])
        << wells[i].name;
  }
}

TEST_P(WholeRun, KeepsTheRatesOfTheHostUntilTheSimulationEnds) {
  RealRun run(GetParam().version);
  const auto model = run.Model(run.Deck(GetParam().example, kEndDays));
  const std::vector<DriverWell> wells = StartRunOfAllWells(*model);
  ASSERT_FALSE(wells.empty());
  const int components = static_cast<int>(model->ComponentNames().size());

  int steps = 0;
  std::vector<double> targets;
  do {
    ASSERT_LT(steps++, 10) << "the simulation doesn't end";
    model->ReadWells();
    if (!targets.empty()) ExpectRates(*model, wells, targets);
    targets = PlanStep(*model, wells, components);
  } while (model->Step(kStepDays));
  EXPECT_EQ(steps, static_cast<int>(std::ceil(kEndDays / kStepDays)));
  EXPECT_DOUBLE_EQ(std::stod(model->Get("Intersect.CurrentElapsedDays")), kStepDays * (steps - 1));

  model->CloseSimulator();
  StartRunOfAllWells(*model);
  model->ReadWells();
  PlanStep(*model, wells, components);
  EXPECT_TRUE(model->Step(kStepDays)) << "the second run of the same model";
}

std::vector<Setting> AllSettings() {
  std::vector<Setting> settings;
  for (const char* version : {"2016.2", "2017.2"}) {
    for (const char* example :
         {"five_spot/FIVE_SPOT.afi", "odeh/ODEH.afi", "gas_cycling/GAS_CYCLING.afi"})
      settings.push_back({version, example});
  }
  return settings;
}

std::string NameOf(const ::testing::TestParamInfo<Setting>& info) {
  std::string name =
      info.param.example.substr(0, info.param.example.find('/')) + "_with_" + info.param.version;
  std::ranges::replace(name, '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Examples, WholeRun, ::testing::ValuesIn(AllSettings()), NameOf);

}  // namespace
}  // namespace gantry::test
