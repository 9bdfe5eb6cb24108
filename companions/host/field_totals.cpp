#include "host/field_totals.h"

namespace gantry::fieldrun {

double FieldRates::WaterCut() const {
  return produced.Liquid() > 0 ? produced.water / produced.Liquid() : 0;
}

double FieldRates::GasOilRatio() const {
  return produced.oil > 0 ? produced.gas * 1e6 / produced.oil : 0;
}

FieldRates SumWells(const std::vector<RunWell>& wells, const StepRecord& record) {
  FieldRates sum;
  for (size_t i = 0; i < wells.size(); ++i) {
    const WellStep& well = record.wells[i];
    if (!well.point.isOpen) continue;
    const bool isProducer = wells[i].spec->Kind() == WellKind::kProducer;
    (isProducer ? sum.produced : sum.injected) += (1 - wells[i].spec->downtime) * well.Made();
    ++(isProducer ? sum.openProducers : sum.openInjectors);
  }
  return sum;
}

void FieldCumulatives::Add(const FieldRates& rates, double days) {
  produced += days * rates.produced;
  injected += days * rates.injected;
}

}  // namespace gantry::fieldrun
