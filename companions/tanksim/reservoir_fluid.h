#pragma once

#include <cmath>
#include <limits>
#include <vector>

namespace gantry::simulator {

using Amounts = std::vector<double>;

/// What a tank holds, in amounts that production and injection conserve.
struct Contents {
  Amounts hydrocarbons;  ///< black oil: stb of oil, Mscf of gas; else lb-mol of each component
  double water = 0.0;    ///< stb
  /// The gas that a barrel of black oil may dissolve: its present content where gas that has come
  /// out of solution doesn't go back, else without limit.
  double dissolvedGasLimit = std::numeric_limits<double>::infinity();
};

/// What one reservoir barrel of a phase becomes at the surface.
struct PhaseStream {
  double oil = 0.0;              ///< stb
  double gas = 0.0;              ///< Mscf
  double oilMass = 0.0;          ///< lb
  double gasMass = 0.0;          ///< lb
  Amounts hydrocarbons;          ///< as in `Contents`
  std::vector<double> oilMoles;  ///< lb-mol of each component in the surface oil
  std::vector<double> gasMoles;  ///< and in the surface gas; both empty for a black oil
};

/// The fluids of a tank at its pressure: volumes in rb, viscosities in cp.
struct FluidState {
  double oilVolume = 0.0;
  double gasVolume = 0.0;
  double waterVolume = 0.0;
  double oilViscosity = 1.0;
  double gasViscosity = 0.02;
  double waterViscosity = 0.5;
  double waterFormationFactor = 1.0;  ///< rb/stb
  double bubblePoint = 0.0;           ///< psia, of the oil; not above the tank's pressure
  double dissolvedGas = 0.0;          ///< Mscf/stb
  PhaseStream liquid;
  PhaseStream vapour;

  double Volume() const { return oilVolume + gasVolume + waterVolume; }
};

/// Gas on its way into a tank: what 1 Mscf of it is.
struct InjectedGas {
  Amounts hydrocarbons;
  double reservoirVolume = 0.0;  ///< rb at the tank's pressure
  double mass = 0.0;             ///< lb
};

/// The state in which a tank begins.
struct InitialState {
  double pressure = 0.0;     ///< psia
  double temperature = 0.0;  ///< degrees Fahrenheit
  double poreVolume = 0.0;   ///< rb at that pressure
  double waterSaturation = 0.0;
  double gasSaturation = 0.0;  ///< black oil only, as the two below
  double dissolvedGas = std::numeric_limits<double>::infinity();  ///< saturated at most
  bool gasRedissolves = true;
  std::vector<double> composition;  ///< mole fractions; compositional only
};

/// Water as both fluid models take it. Field units.
struct WaterData {
  double referencePressure = 14.7;
  double formationFactor = 1.0;
  double compressibility = 3e-6;
  double viscosity = 0.5;
  double density = 62.43;
};

/// A fluid model: how contents and a pressure give phases. Field units.
class ReservoirFluid {
 public:
  virtual ~ReservoirFluid() = default;

  virtual Contents Fill(const InitialState& initial) const = 0;
  /// rb that the contents take; falls with pressure.
  virtual double Volume(const Contents& contents, double pressure, double temperature) const = 0;
  virtual FluidState State(const Contents& contents, double pressure, double temperature) const = 0;
  /// Gas of a composition (mole fractions; empty for a black oil) at reservoir conditions.
  virtual InjectedGas Injected(const std::vector<double>& composition, double pressure,
                               double temperature) const = 0;

  /// rb/stb: a slightly compressible liquid (Craft and Hawkins, equation 1.38).
  double WaterFormationFactor(double pressure) const {
    return water_.formationFactor *
           std::exp(-water_.compressibility * (pressure - water_.referencePressure));
  }
  double WaterDensity() const { return water_.density; }  ///< lb/ft3 at the surface

 protected:
  explicit ReservoirFluid(const WaterData& water) : water_(water) {}
  const WaterData& Water() const { return water_; }

 private:
  WaterData water_;
};

}  // namespace gantry::simulator
