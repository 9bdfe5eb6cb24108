#pragma once

#include "tanksim/lookup_table.h"
#include "tanksim/reservoir_fluid.h"

namespace gantry::simulator {

/// The tables of a black oil, as a deck gives them.
struct BlackOilData {
  std::vector<double> oilPressure;    ///< bubble points, rising
  std::vector<double> dissolvedGas;   ///< Mscf/stb at the bubble point, rising
  std::vector<double> oilFactor;      ///< rb/stb at the bubble point
  std::vector<double> oilViscosity;   ///< cp at the bubble point
  double oilCompressibility = 1e-5;   ///< above the bubble point, 1/psi
  double oilViscosityGradient = 0.0;  ///< above the bubble point, relative, 1/psi
  std::vector<double> gasPressure;
  std::vector<double> gasFactor;  ///< rb/Mscf, falling
  std::vector<double> gasViscosity;
  double oilDensity = 50.0;  ///< lb/ft3 at the surface
  double gasDensity = 0.06;
  WaterData water;
};

/// The black-oil model: two surface components, with gas dissolved in the reservoir's oil (Craft
/// and Hawkins, Applied Petroleum Reservoir Engineering, chapter 1; McCain, The Properties of
/// Petroleum Fluids, chapter 11).
class BlackOil : public ReservoirFluid {
 public:
  explicit BlackOil(const BlackOilData& data);

  Contents Fill(const InitialState& initial) const override;
  double Volume(const Contents& contents, double pressure, double temperature) const override;
  FluidState State(const Contents& contents, double pressure, double temperature) const override;
  InjectedGas Injected(const std::vector<double>& composition, double pressure,
                       double temperature) const override;

  double OilFactor(double pressure, double dissolvedGas) const;
  double GasFactor(double pressure) const { return 1.0 / gasExpansion_.At(pressure); }

 private:
  double DissolvedGas(const Contents& contents, double pressure) const;

  LookupTable dissolvedGas_;  // over pressure
  LookupTable bubblePoint_;   // over dissolved gas
  LookupTable oilFactor_;     // over the bubble point
  LookupTable oilViscosity_;
  LookupTable gasExpansion_;  // 1 / gas factor, over pressure: near linear, and positive beyond
  LookupTable gasViscosity_;
  double oilCompressibility_;
  double oilViscosityGradient_;
  double oilDensity_;
  double gasDensity_;
};

}  // namespace gantry::simulator
