#pragma once

#include <string>
#include <string_view>

#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

/// What is known of a well, a group or the field at the end of a step, in field units: rates for
/// the part of the step for which wells are up, and volumes since the start of the run.
struct Standing {
  double oil = 0, water = 0, gas = 0, waterInjected = 0, gasInjected = 0;
  double totalOil = 0, totalWater = 0, totalGas = 0;
  double totalWaterInjected = 0, totalGasInjected = 0;
  double pressure = 0;  ///< bottom hole, of a well alone
};

/// A quantity by which events and economic limits go. One that isn't known is not a number.
struct Measure {
  std::string_view name;
  Quantity quantity;
  double (*of)(const Standing&);
  bool isOfWell = false;  ///< of a single well alone
};

/// Null for a name that nothing has.
const Measure* FindMeasure(std::string_view name);

/// "P1 water_cut > 0.8": a well, a group or the field, one of its measures, and what that passes.
struct Condition {
  std::string subject;  ///< a well or a group by its name; empty for the field
  bool isGroup = false;
  const Measure* measure = nullptr;
  bool isAbove = false;
  double limit = 0;  ///< in field units

  bool Holds(const Standing& standing) const;
};

/// The condition of an event. Throws CaseError at its line for a text that means none.
Condition ParseCondition(const CaseModel& model, const EventSpec& event);

}  // namespace gantry::fieldrun
