#pragma once

#include <memory>

#include "tanksim/well.h"

namespace gantry::simulator {

/// What of a run its past has made.
struct RunMoment {
  double days = 0.0;
  std::vector<TankMoment> tanks;
  std::vector<WellMoment> wells;
};

/// All tanks and wells of a deck, and their way through time. Field units, days.
class TankRun {
 public:
  /// The deck must outlive the run. Throws `DeckError` for a well that has nothing to flow.
  explicit TankRun(const Deck& deck);

  double Days() const { return days_; }
  bool IsAtEnd() const;
  std::vector<Well>& Wells() { return wells_; }
  const std::vector<Well>& Wells() const { return wells_; }
  const std::vector<Tank>& Tanks() const { return tanks_; }

  /// Steps on to a time, or to the deck's end if that comes first.
  void AdvanceTo(double days);

  RunMoment Moment() const;
  /// To a moment of a run of the same deck.
  void GoTo(RunMoment moment);

 private:
  double StepTank(size_t tank, double longest);
  TankFlow FlowOf(size_t tank, double pressure) const;

  const Deck* deck_;
  std::unique_ptr<ReservoirFluid> fluid_;
  RockFluid rockFluid_;
  std::vector<Tank> tanks_;
  std::vector<Well> wells_;
  std::vector<std::vector<size_t>> wellsOfTank_;
  double days_ = 0.0;
};

}  // namespace gantry::simulator
