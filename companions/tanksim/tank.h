#pragma once

#include "tanksim/deck.h"
#include "tanksim/displacement.h"
#include "tanksim/inflow.h"
#include "tanksim/reservoir_fluid.h"

namespace gantry::simulator {

/// What flows between a tank and its wells in a day.
struct TankFlow {
  double liquid = 0.0;          ///< rb/d produced of the reservoir's oil phase
  double vapour = 0.0;          ///< rb/d produced of its gas phase
  double water = 0.0;           ///< stb/d produced
  double injectedWater = 0.0;   ///< stb/d
  double injectedVolume = 0.0;  ///< rb/d of all that is injected
  Amounts injectedHydrocarbons;
};

/// What of a tank its past has made; all else follows from its data.
struct TankMoment {
  double pressure = 0.0;         ///< psia
  double aquiferPressure = 0.0;  ///< psia
  Contents contents;
};

/// A volume of rock and fluids at one pressure, which follows from the material balance: the
/// fluids that are left take just the pore volume (Craft and Hawkins, Applied Petroleum Reservoir
/// Engineering, chapter 2). Field units.
class Tank {
 public:
  /// The data and models must outlive the tank.
  Tank(const TankData& data, const ReservoirFluid& fluid, const RockFluid& rockFluid);

  double Pressure() const { return now_.pressure; }
  double Temperature() const { return data_->initial.temperature; }
  double PoreVolume(double pressure) const;
  const FluidState& State() const { return state_; }
  const Contents& Held() const { return now_.contents; }
  const ReservoirFluid& Fluid() const { return *fluid_; }

  /// Relative permeability over viscosity of each phase as the wells see it, 1/cp.
  const PhaseInflow& Mobility() const { return mobility_; }
  /// The same at the start for oil at connate water, and for gas at its largest saturation: what
  /// the wells' indices refer to.
  double ReferenceOilMobility() const { return referenceOilMobility_; }
  double ReferenceGasMobility() const { return referenceGasMobility_; }

  /// The inflow that a producer has from this tank at a pressure that may differ from the present.
  Inflow InflowAt(double pressure) const;

  /// rb by which the fluids would exceed the pore volume at `pressure`, after `days` of `flow`.
  double ExcessVolume(const TankFlow& flow, double days, double pressure) const;
  /// Takes a step of which `pressure` is the end.
  void Advance(const TankFlow& flow, double days, double pressure);

  const TankMoment& Moment() const { return now_; }
  void GoTo(TankMoment moment);

 private:
  Contents ContentsAfter(const TankFlow& flow, double days, double pressure) const;
  double AquiferInflux(double days, double pressure) const;
  void Refresh();
  PhaseInflow MobilityAt(double waterSaturation, double gasSaturation) const;
  PhaseInflow MobilityBehindFronts(double waterSaturation, double gasSaturation) const;
  void PrepareFronts();

  const TankData* data_;
  const ReservoirFluid* fluid_;
  const RockFluid* rockFluid_;
  double referencePoreVolume_ = 0.0;  ///< at the rock's reference pressure
  TankMoment now_;
  FluidState state_;
  PhaseInflow mobility_;
  double initialWaterSaturation_ = 0.0;
  double initialGasSaturation_ = 0.0;
  double referenceOilMobility_ = 0.0;
  double referenceGasMobility_ = 0.0;
  Displacement gasFront_;
  Displacement waterFront_;
};

}  // namespace gantry::simulator
