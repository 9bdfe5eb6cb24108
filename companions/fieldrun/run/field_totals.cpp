#include "fieldrun/run/field_totals.h"

namespace gantry::fieldrun {
namespace {

// 0 over nothing, and unknown over what is unknown.
double Ratio(double part, double whole) { return whole <= 0 ? 0 : part / whole; }

}  // namespace

double FieldRates::WaterCut() const { return Ratio(produced.water, produced.Liquid()); }
double FieldRates::GasOilRatio() const { return Ratio(produced.gas * 1e6, produced.oil); }

FieldRates SumWells(const std::vector<RunWell>& wells, const StepRecord& record) {
  FieldRates sum;
  for (size_t i = 0; i < wells.size(); ++i) {
    const WellStep& well = record.wells[i];
    if (!well.point.isOpen) continue;
    const bool isProducer = wells[i].spec->IsProducer();
    (isProducer ? sum.produced : sum.injected) += well.uptime * well.Made();
    ++(isProducer ? sum.openProducers : sum.openInjectors);
  }
  return sum;
}

Quantity QuantityOf(const GroupLimitReport& group) {
  return group.limit.starts_with("gas") ? Quantity::kGasRate : Quantity::kLiquidRate;
}

std::string_view CountedBy(const WellStep& step) {
  return step.isTotalMeasured ? "simulator" : "rates";
}

FieldTotals SumTotals(const std::vector<RunWell>& wells, const StepRecord& record) {
  FieldTotals sum;
  for (size_t i = 0; i < wells.size(); ++i) {
    const WellStep& well = record.wells[i];
    (wells[i].spec->IsProducer() ? sum.produced : sum.injected) += well.total;
    const std::string_view by = CountedBy(well);
    sum.by = sum.by.empty() || sum.by == by ? by : "both";
  }
  return sum;
}

}  // namespace gantry::fieldrun
