#pragma once

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// What all wells together made and took at the end of a step. Not a number where the simulator
/// doesn't tell it of an open well.
struct FieldRates {
  Rates produced;
  Rates injected;
  int openProducers = 0;
  int openInjectors = 0;

  double WaterCut() const;     ///< 0 without liquid
  double GasOilRatio() const;  ///< scf/STB, 0 without oil
};

/// The field's rates in a step: those that the simulator reports at its end, for the part of the
/// step for which each well is up.
FieldRates SumWells(const std::vector<RunWell>& wells, const StepRecord& record);

/// What all wells have made and injected since the start of a run. STB, MMscf.
struct FieldTotals {
  Rates produced;
  Rates injected;
  std::string by;  ///< "simulator", "rates" or "both": who has counted it
};

FieldTotals SumTotals(const std::vector<RunWell>& wells, const StepRecord& record);

/// What the sums of a group's limit are measured in.
Quantity QuantityOf(const GroupLimitReport& group);

/// "simulator" or "rates".
std::string_view CountedBy(const WellStep& step);

}  // namespace gantry::fieldrun
