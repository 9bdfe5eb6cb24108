#pragma once

#include <span>

#include "tanksim/tank.h"
#include "tanksim/tubing.h"

namespace gantry::simulator {

/// How a well flows, or what it has flowed in all. Rates in field units a day.
struct WellVolumes {
  double oil = 0.0;    ///< stb
  double gas = 0.0;    ///< Mscf
  double water = 0.0;  ///< stb
  double injectedGas = 0.0;
  double injectedWater = 0.0;
  double reservoirProduction = 0.0;  ///< rb
  double reservoirInjection = 0.0;
};

/// Each of them, by the name under which a run's state keeps it.
struct WellVolume {
  const char* name;
  double WellVolumes::*volume;
};
inline constexpr WellVolume kWellVolumes[] = {
    {"oil", &WellVolumes::oil},
    {"gas", &WellVolumes::gas},
    {"water", &WellVolumes::water},
    {"injected_gas", &WellVolumes::injectedGas},
    {"injected_water", &WellVolumes::injectedWater},
    {"reservoir_production", &WellVolumes::reservoirProduction},
    {"reservoir_injection", &WellVolumes::reservoirInjection},
};

/// What of a well its past has made; all else follows from its data and its tank.
struct WellMoment {
  WellStatus status = WellStatus::kOpen;
  double uptime = 1.0;
  std::vector<WellLimit> controllerLimits;
  std::vector<double> injectedComposition;
  WellVolumes totals;
};

struct WellFlow {
  WellVolumes rates;
  double liquid = 0.0;  ///< rb/d of the reservoir's oil phase
  double vapour = 0.0;  ///< rb/d of its gas phase
  double bottomHolePressure = 0.0;
  double tubingHeadPressure = 0.0;
};

/// One well at its tank. Its flow is solved for the tank's present state: the tightest of all
/// limits, a controller's and its own, decides its bottom-hole pressure. Field units.
class Well {
 public:
  /// Both must outlive the well.
  Well(const WellData& data, const Tank& tank);

  /// False when its index refers to a phase that the tank doesn't have.
  bool CanFlow() const { return conductance_ > 0.0; }
  const WellData& Data() const { return *data_; }
  WellStatus Status() const { return now_.status; }
  double Uptime() const { return now_.uptime; }
  double Temperature() const;
  std::span<const WellLimit> ControllerLimits() const { return now_.controllerLimits; }
  const std::vector<double>& InjectedComposition() const { return now_.injectedComposition; }
  const Tank& Reservoir() const { return *tank_; }

  /// An abandoned well stays so.
  void SetStatus(WellStatus status);
  void SetUptime(double fraction) { now_.uptime = fraction; }
  void SetControllerLimits(std::vector<WellLimit> limits);
  void SetInjectedComposition(std::vector<double> fractions);

  /// The flow at the tank's present state, solved once for each change.
  const WellFlow& Flow() const;
  /// The flow if the tank stood at another pressure; without the tubing.
  WellFlow FlowAt(double tankPressure) const;

  /// Adds a flow to what the tank exchanges with its wells in a day, for the time that it is up.
  void AddTo(TankFlow& sum, const WellFlow& flow) const;
  /// After a step of the tank: the flow during the step goes into the totals.
  void Advance(const WellFlow& flow, double days);
  const WellVolumes& Totals() const { return now_.totals; }

  const WellMoment& Moment() const { return now_; }
  /// Behind its tank.
  void GoTo(WellMoment moment);

  double OilDensity() const;  ///< lb/ft3 at the surface
  double GasDensity() const;

 private:
  /// A rate as a sum over the two drawdowns of an `Inflow`.
  struct RateIndex {
    double hydrocarbon;
    double water;
  };

  template <class Visit>
  void ForEachLimit(Visit visit) const;
  PhaseInflow Index() const;
  RateIndex IndexOf(LimitItem item, const PhaseInflow& index) const;
  double ProducerPressure(const Inflow& inflow, const PhaseInflow& index) const;
  double InjectorPressure(double tankPressure) const;
  double LiftedPressure(double pressure, double least, double tankPressure) const;
  WellFlow ProducerFlow(const Inflow& inflow, const PhaseInflow& index, double pressure) const;
  WellFlow InjectorFlow(double tankPressure, double pressure) const;
  double InjectedVolumeFactor() const;
  double TubingPressure(const WellFlow& flow) const;
  TubingStream Stream(const WellFlow& flow) const;
  double StreamDensity(double PhaseStream::*volume, double PhaseStream::*mass,
                       double cubicFeet) const;

  const WellData* data_;
  const Tank* tank_;
  double conductance_ = 0.0;  ///< rb cp/d/psi of a producer; surface rate/psi of an injector
  WellMoment now_;
  InjectedGas injectedGas_;  ///< 1 Mscf at the tank's present pressure
  mutable bool isSolved_ = false;
  mutable WellFlow flow_;
};

}  // namespace gantry::simulator
