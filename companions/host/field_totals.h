#pragma once

#include "host/run_record.h"

namespace gantry::fieldrun {

/// What all wells together made and took in one step.
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

/// What has been made and injected since the start of a run: rates held over each step. STB, MMscf.
struct FieldCumulatives {
  Rates produced;
  Rates injected;

  void Add(const FieldRates& rates, double days);
};

}  // namespace gantry::fieldrun
