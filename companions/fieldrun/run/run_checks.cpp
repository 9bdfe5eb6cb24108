#include "fieldrun/run/run_checks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using enum Quantity;

// Beyond what any well has, in field units: psi, and STB/d or MMscf/d.
constexpr double kMostPressure = 1e5;
constexpr double kMostRate = 1e7;
constexpr double kMissing = -9999.0;  // the mark of the module for a value not set lies below it

// How far a well may be from its plan at the end of a step: the reservoir moves on meanwhile.
constexpr double kRateShort = 0.2;
constexpr double kPressureOff = 0.3;

std::array<double, 4> Numbers(const InflowPoint& point) {
  return {point.pressure, point.rates.oil, point.rates.water, point.rates.gas};
}

bool IsFinite(const InflowPoint& point) {
  return std::ranges::all_of(Numbers(point), [](double value) { return std::isfinite(value); });
}

// A point that the module has marked as not measured is no fault.
bool IsMarkedMissing(const InflowPoint& point) {
  return std::ranges::any_of(Numbers(point), [](double value) { return value <= kMissing; });
}

bool IsPlausible(const InflowPoint& point) {
  const auto numbers = Numbers(point);
  return IsFinite(point) && std::abs(point.pressure) < kMostPressure &&
         std::all_of(numbers.begin() + 1, numbers.end(),
                     [](double rate) { return std::abs(rate) < kMostRate; });
}

}  // namespace

RunChecks::RunChecks(UnitSystem units, std::function<void(const RunWarning&)> warn)
    : units_(units), warn_(std::move(warn)) {}

std::string RunChecks::Show(double value, Quantity quantity) const {
  return fmt::format("{:.4g} {}", FromField(value, quantity, units_), UnitName(quantity, units_));
}

void RunChecks::Tell(const std::string& topic, const RunWell& well, const Date& date,
                     const std::string& text) const {
  warn_({topic, well.spec->name, date, text});
}

void RunChecks::Inflow(const RunWell& well, const Date& date,
                       const std::vector<InflowPoint>& inflow) const {
  const auto bad = std::ranges::count_if(inflow, [](const InflowPoint& point) {
    return !IsMarkedMissing(point) && !IsPlausible(point);
  });
  if (bad == 0) return;
  Tell("inflow", well, date,
       fmt::format("{} of the {} points of its inflow hold numbers that no well has", bad,
                   inflow.size()));
}

void RunChecks::TubingGravities(const RunWell& well, const Date& date, const Gravities& wanted,
                                const Gravities& taken) const {
  const struct {
    const char* fluid;
    double Gravities::*gravity;
  } kFluids[] = {{"oil", &Gravities::oil}, {"gas", &Gravities::gas}, {"water", &Gravities::water}};
  for (const auto& [fluid, gravity] : kFluids) {
    if (wanted.*gravity == taken.*gravity) continue;
    Tell(fmt::format("{} gravity", fluid), well, date,
         fmt::format("the simulator's {} gravity, {:.4g}, can't be that of a surface fluid; its "
                     "tubing takes {:.4g} ({}_gravity of [network] gives another)",
                     fluid, wanted.*gravity, taken.*gravity, fluid));
  }
}

void RunChecks::Lift(const RunWell& well, const Date& date, const NetworkWell& solved) const {
  if (!solved.isOpen || solved.tubing == nullptr || !solved.tubing->table) return;
  const std::string beyond = solved.tubing->table->BeyondAxes(
      solved.manifoldPressure, solved.artificialLift, solved.Point().rates);
  if (beyond.empty()) return;
  Tell("lift table", well, date,
       fmt::format("its lift table doesn't reach to where it flows, and is carried on straight: {}",
                   beyond));
}

void RunChecks::CompareRates(const RunWell& well, const Date& date, const Rates& planned,
                             const Rates& reported) const {
  if (reported.Size() >= (1 - kRateShort) * planned.Size()) return;
  const bool isByGas = 150 * planned.gas > planned.Liquid();
  const Quantity quantity = isByGas ? kGasRate : kLiquidRate;
  Tell("rate", well, date,
       fmt::format("flows {} of {}, where the network has planned {}",
                   Show(isByGas ? reported.gas : reported.Liquid(), quantity),
                   isByGas ? "gas" : "liquid",
                   Show(isByGas ? planned.gas : planned.Liquid(), quantity)));
}

bool RunChecks::Report(const RunWell& well, const Date& date, const OperatingPoint& planned,
                       const InflowPoint& reported) const {
  if (!IsFinite(reported)) {
    Tell("report", well, date, "the simulator reports no numbers of it; such a step isn't counted");
    return false;
  }
  if (!planned.isOpen) return true;
  if (!IsPlausible(reported)) {
    Tell("report", well, date, "the simulator reports numbers that no well has");
    return true;
  }
  const Rates& rates = reported.rates;
  if (std::min({rates.oil, rates.water, rates.gas}) < -1e-3) {
    Tell("backflow", well, date, "the simulator reports a flow the other way");
  }
  CompareRates(well, date, planned.rates, rates);
  const double plan = planned.pressure + kAtmosphere;
  if (std::abs(reported.pressure - planned.pressure) > kPressureOff * plan) {
    Tell("pressure", well, date,
         fmt::format("doesn't hold its planned pressure, {}: the simulator reports {}",
                     Show(planned.pressure, kGaugePressure),
                     Show(reported.pressure, kGaugePressure)));
  }
  return true;
}

}  // namespace gantry::fieldrun
