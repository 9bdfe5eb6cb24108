#include "tanksim/tank_run.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tanksim/constants.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator {

namespace {

constexpr double kLongestStep = 31.0;  // days
constexpr double kShortestStep = 0.01;
constexpr double kLargestThroughput = 0.01;  // of the pore volume in one step
constexpr double kTimeTolerance = 1e-9;      // days
constexpr double kHighestPressure = 30000.0;

/// The root of a falling function between two pressures, by regula falsi with the Illinois
/// modification (Dowell and Jarratt, BIT 11, 1971). An end of the range where there is none.
template <class Function>
double FallingRoot(Function function, double guess, double low, double high) {
  double left = guess;
  double atLeft = function(left);
  double right = left;
  double atRight = atLeft;
  for (double reach = 10.0; atLeft < 0.0 && left > low; reach *= 4.0) {
    right = left;
    atRight = atLeft;
    left = std::max(low, left - reach);
    atLeft = function(left);
  }
  for (double reach = 10.0; atRight > 0.0 && right < high; reach *= 4.0) {
    left = right;
    atLeft = atRight;
    right = std::min(high, right + reach);
    atRight = function(right);
  }
  if (atLeft <= 0.0) return left;
  if (atRight >= 0.0) return right;
  int lastSide = 0;
  for (int i = 0; i < 100 && right - left > 1e-9 * right; ++i) {
    const double middle = (left * atRight - right * atLeft) / (atRight - atLeft);
    const double atMiddle = function(middle);
    if (atMiddle == 0.0) return middle;
    if (atMiddle > 0.0) {
      left = middle;
      atLeft = atMiddle;
      if (lastSide == 1) atRight *= 0.5;
      lastSide = 1;
    } else {
      right = middle;
      atRight = atMiddle;
      if (lastSide == -1) atLeft *= 0.5;
      lastSide = -1;
    }
  }
  return 0.5 * (left + right);
}

std::unique_ptr<ReservoirFluid> MakeFluid(const Deck& deck) {
  if (deck.compositional) return std::make_unique<CompositionalFluid>(*deck.compositional);
  return std::make_unique<BlackOil>(deck.blackOil);
}

}  // namespace

TankRun::TankRun(const Deck& deck)
    : deck_(&deck),
      fluid_(MakeFluid(deck)),
      rockFluid_(deck.rockFluid),
      wellsOfTank_(deck.tanks.size()) {
  tanks_.reserve(deck.tanks.size());
  for (const TankData& tank : deck.tanks) tanks_.emplace_back(tank, *fluid_, rockFluid_);
  wells_.reserve(deck.wells.size());
  for (const WellData& well : deck.wells) {
    wellsOfTank_[well.tank].push_back(wells_.size());
    wells_.emplace_back(well, tanks_[well.tank]);
    if (wells_.back().CanFlow()) continue;
    throw DeckError(deck.file, well.line,
                    fmt::format("the index of well '{}' is of {}, which its tank doesn't hold",
                                well.name, well.indexIsOfGas ? "gas" : "oil"));
  }
}

bool TankRun::IsAtEnd() const {
  return deck_->endTime && days_ >= *deck_->endTime - kTimeTolerance;
}

void TankRun::AdvanceTo(double days) {
  const double target = deck_->endTime ? std::min(days, *deck_->endTime) : days;
  if (target <= days_) return;
  for (size_t tank = 0; tank < tanks_.size(); ++tank) {
    for (double left = target - days_; left > kTimeTolerance;) left -= StepTank(tank, left);
  }
  days_ = target;
}

RunMoment TankRun::Moment() const {
  RunMoment moment{days_, {}, {}};
  for (const Tank& tank : tanks_) moment.tanks.push_back(tank.Moment());
  for (const Well& well : wells_) moment.wells.push_back(well.Moment());
  return moment;
}

void TankRun::GoTo(RunMoment moment) {
  days_ = moment.days;
  for (size_t i = 0; i < tanks_.size(); ++i) tanks_[i].GoTo(std::move(moment.tanks.at(i)));
  for (size_t i = 0; i < wells_.size(); ++i) wells_[i].GoTo(std::move(moment.wells.at(i)));
}

TankFlow TankRun::FlowOf(size_t tank, double pressure) const {
  TankFlow sum;
  for (const size_t well : wellsOfTank_[tank]) {
    wells_[well].AddTo(sum, wells_[well].FlowAt(pressure));
  }
  return sum;
}

/// One step of at most `longest` days: the wells' phases keep their shares, the pressure is that
/// of the step's end. Returns the days taken.
double TankRun::StepTank(size_t tank, double longest) {
  Tank& reservoir = tanks_[tank];
  const TankFlow present = FlowOf(tank, reservoir.Pressure());
  const double throughput =
      present.liquid + present.vapour + present.water + present.injectedVolume;
  double days = std::min(longest, kLongestStep);
  if (throughput > 0.0) {
    const double limit = kLargestThroughput * reservoir.State().Volume() / throughput;
    days = std::min(days, std::max(kShortestStep, limit));
  }
  // A step that would leave a sliver behind takes it along.
  if (longest - days < 0.1 * days) days = longest;
  const double pressure = FallingRoot(
      [&](double candidate) {
        return reservoir.ExcessVolume(FlowOf(tank, candidate), days, candidate);
      },
      reservoir.Pressure(), kStandardPressure, kHighestPressure);
  const TankFlow flow = FlowOf(tank, pressure);
  std::vector<WellFlow> wellFlows;
  for (const size_t well : wellsOfTank_[tank]) wellFlows.push_back(wells_[well].FlowAt(pressure));
  reservoir.Advance(flow, days, pressure);
  for (size_t i = 0; i < wellFlows.size(); ++i) {
    wells_[wellsOfTank_[tank][i]].Advance(wellFlows[i], days);
  }
  return days;
}

}  // namespace gantry::simulator
