#pragma once

#include <functional>

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// Looks through what the simulator tells of a run for numbers that no well can have, and for wells
/// that don't do what the network has planned for them. Tells what it finds; changes nothing.
class RunChecks {
 public:
  RunChecks(UnitSystem units, std::function<void(const RunWarning&)> warn);

  /// The inflow of a well at the beginning of a step.
  void Inflow(const RunWell& well, const Date& date, const std::vector<InflowPoint>& inflow) const;
  /// The gravities that a tubing takes in place of the simulator's own, which it should have taken.
  void TubingGravities(const RunWell& well, const Date& date, const Gravities& wanted,
                       const Gravities& taken) const;
  /// The operating point of a well that has a lift table, which may not reach so far.
  void Lift(const RunWell& well, const Date& date, const NetworkWell& solved) const;
  /// What the simulator reports when the step is over, against what was planned. False when it
  /// isn't made of numbers.
  bool Report(const RunWell& well, const Date& date, const OperatingPoint& planned,
              const InflowPoint& reported) const;

 private:
  std::string Show(double value, Quantity quantity) const;
  void Tell(const std::string& topic, const RunWell& well, const Date& date,
            const std::string& text) const;
  void CompareRates(const RunWell& well, const Date& date, const Rates& planned,
                    const Rates& reported) const;

  UnitSystem units_;
  std::function<void(const RunWarning&)> warn_;
};

}  // namespace gantry::fieldrun
