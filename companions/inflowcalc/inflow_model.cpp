#include "inflowcalc/inflow_model.h"

#include <algorithm>

#include "inflowcalc/drainage_test_run.h"
#include "inflowcalc/drainage_transform.h"

namespace gantry::inflow {
namespace {

/// The rate at which the well stands; 0 for one that hasn't stepped yet, when block and region are
/// at rest together.
double CurrentRate(const _tGetSetData& state, RateMeasure measure) {
  if (IsMissing(state.pressure[0])) return 0.0;
  InflowRow row;
  row.oilRate = state.oilRate[0];
  row.waterRate = state.waterRate[0];
  row.gasRate = state.gasRate[0];
  const double rate = RateOf(row, measure);
  return IsMissing(rate) ? 0.0 : rate;
}

}  // namespace

void InflowModel::StartWells() {
  wells_.clear();
  names_.clear();
}

void InflowModel::AddWell(InflowWell well) {
  names_.insert(well.name);
  wells_.push_back(std::move(well));
}

double InflowModel::RatioOf(std::string_view wellName) const {
  const auto found = ratios_.find(wellName);
  return found == ratios_.end() ? kGreatestRatio : found->second;
}

void InflowModel::Transform(std::string_view wellName, const _tGetSetData& state,
                            _tGetSetData& inflow) const {
  if (isCalculating_) return;
  const bool isWhole = !HasGaps(inflow);
  if (isWhole && ratios_.empty()) return;  // a table of an untested case, by far the most common
  const double ratio = RatioOf(wellName);
  if ((isWhole && ratio >= kGreatestRatio) || !names_.contains(wellName)) return;

  InflowRows rows = ReadRows(inflow);
  TransformToRegion(rows, ratio, CurrentRate(state, MeasureOf(rows)));
  WriteRows(rows, inflow);
}

void InflowModel::Calculate() {
  if (isCalculating_) throw CallbackError("a calculation is under way");
  struct Mark {
    explicit Mark(bool& marked) : flag(marked) { flag = true; }
    ~Mark() { flag = false; }
    bool& flag;
  };
  const Mark calculating(isCalculating_);
  WellRatios measured = RunWellTest(*this);
  measured.merge(ratios_);
  ratios_ = std::move(measured);
}

}  // namespace gantry::inflow
