#include "inflowcalc/drainage_test_run.h"

#include <limits>
#include <memory>
#include <optional>

#include "inflowcalc/drainage_transform.h"

namespace gantry::inflow {
namespace {

// The plan of the test. The rate is a part of what a well could give, so that the regions are
// hardly depleted by it; the periods are those in which a region of some tens of acres comes to
// pseudo-steady state, and to rest.
constexpr double kFirstStepDays = 0.1;
constexpr double kTestRateFraction = 0.2;
constexpr double kStepDays = 10.0;
constexpr int kFlowSteps = 3;
constexpr int kBuildUpSteps = 3;

struct TestedWell {
  InflowWell well;
  double flowingPressure = 0.0;
  double blockPressure = 0.0;
};

/// The test of all wells, phase by phase.
class WellTest {
 public:
  explicit WellTest(InflowModel& model)
      : model_(model), simulator_(model.Callbacks()), record_(std::make_unique<_tGetSetData>()) {}

  WellRatios Run() {
    Restart();
    ImposeTestRates();
    Advance(kFlowSteps);
    ReadFlowing();
    ShutAll();
    Advance(kBuildUpSteps);
    return CompareAtRest();
  }

 private:
  /// Restarting registers the wells anew, and only a step makes their inflow known.
  void Restart() {
    simulator_.Restart();
    simulator_.Advance(kFirstStepDays);
  }

  void ImposeTestRates() {
    const std::vector<InflowWell> wells = model_.Wells();
    for (const InflowWell& well : wells) {
      const InflowRows rows = ReadInflow(well);
      const RateMeasure measure = MeasureOf(rows);
      if (!IsCurve(rows, measure) || !CanImpose(well, measure)) continue;
      simulator_.ImposeRate(well.index, kTestRateFraction * HighestRate(rows, measure));
      tested_.push_back({well});
    }
  }

  /// An imposed rate of a producer is one of liquid, so a well of dry gas can't be tested.
  static bool CanImpose(const InflowWell& well, RateMeasure measure) {
    return !well.isProducer || measure == RateMeasure::kLiquid;
  }

  void Advance(int steps) {
    for (int step = 0; step < steps && !tested_.empty(); ++step) simulator_.Advance(kStepDays);
  }

  void ReadFlowing() {
    for (TestedWell& tested : tested_) {
      tested.blockPressure = PressureAtRest(ReadInflow(tested.well));
      *record_ = {};
      simulator_.ReadCurrent(tested.well.index, *record_);
      tested.flowingPressure = record_->pressure[0];
    }
  }

  void ShutAll() {
    for (const TestedWell& tested : tested_) simulator_.ImposeRate(tested.well.index, 0.0);
  }

  WellRatios CompareAtRest() {
    WellRatios ratios;
    for (const TestedWell& tested : tested_) {
      const double regionPressure = PressureAtRest(ReadInflow(tested.well));
      const std::optional<double> ratio =
          RatioFromTest(tested.flowingPressure, tested.blockPressure, regionPressure);
      if (ratio) ratios.insert_or_assign(tested.well.name, *ratio);
    }
    return ratios;
  }

  InflowRows ReadInflow(const InflowWell& well) {
    *record_ = {};
    simulator_.ReadInflow(well.index, *record_);
    return ReadRows(*record_);
  }

  /// Where the curve meets rate 0; the mark of a missing number, when there is no curve.
  static double PressureAtRest(const InflowRows& rows) {
    const RateMeasure measure = MeasureOf(rows);
    return IsCurve(rows, measure) ? PressureAt(rows, measure, 0.0)
                                  : std::numeric_limits<double>::quiet_NaN();
  }

  InflowModel& model_;
  const SimulatorCallbacks& simulator_;
  std::unique_ptr<_tGetSetData> record_;
  std::vector<TestedWell> tested_;
};

}  // namespace

WellRatios RunWellTest(InflowModel& model) { return WellTest(model).Run(); }

}  // namespace gantry::inflow
