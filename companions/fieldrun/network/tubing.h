#pragma once

#include <vector>

#include "fieldrun/case/case_model.h"
#include "fieldrun/network/inflow_curve.h"

namespace gantry::fieldrun {

/// Stock-tank gravities of what a well makes.
struct Gravities {
  double oil = 0.85;    ///< water = 1
  double gas = 0.7;     ///< air = 1
  double water = 1.02;  ///< fresh water = 1
};

/// What a place along a tubing makes of its fluids: the part that is the same for all pressures and
/// rates. Pressures in psia.
struct TubingPlace {
  TubingPlace(const Gravities& gravities, double temperature);

  double Rankine() const { return fahrenheit + toml_reader::kFahrenheitToRankine; }
  double GasDeviation(double pressure) const;
  double DissolvedGas(const Gravities& gravities, double pressure) const;  ///< scf/STB

  double fahrenheit;
  double solution;  ///< of gas in oil
  double linear;    ///< coefficients of the deviation factor's polynomial, 1/psi and 1/psi2
  double quadratic;
};

/// The lift curve of a well: what pressure the tubing needs at its foot to carry the given rates up
/// against `headPressure` (psig both).
///
/// The mixture of oil with its dissolved gas, free gas and water moves as one fluid without slip.
/// The pressure gradient is its weight and the Darcy-Weisbach friction,
///   dp/dL = rho cos(theta) + f rho v^2 / (2 D),
/// integrated from the head down; acceleration is left out. Sources: the no-slip mixture, Poettmann
/// and Carpenter, API Drilling and Production Practice, 1952; friction factor, Swamee and Jain, J.
/// Hydraulics Div. ASCE 102, 1976, and 64/Re in laminar flow; dissolved gas and oil volume,
/// Standing, API Drilling and Production Practice, 1947; gas, Sutton, SPE 14265, 1985, and Papay,
/// OGIL Muszaki Tudomanyos Kozlemenyei, 1968.
///
/// Refers to the tubing, which must outlive it.
class TubingColumn {
 public:
  TubingColumn(const TubingSpec& tubing, const Gravities& gravities);

  /// Infinite when nothing flows.
  double FootPressure(double headPressure, const Rates& rates) const;

 private:
  const TubingSpec& tubing_;
  Gravities gravities_;
  std::vector<TubingPlace> places_;  ///< the head and the middle of each segment
};

}  // namespace gantry::fieldrun
