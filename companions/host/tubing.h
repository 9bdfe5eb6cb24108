#pragma once

#include "host/case_model.h"
#include "host/inflow_curve.h"

namespace gantry::fieldrun {

/// Stock-tank gravities of what a well makes.
struct Gravities {
  double oil = 0.85;    ///< water = 1
  double gas = 0.7;     ///< air = 1
  double water = 1.02;  ///< fresh water = 1
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
/// Infinite when nothing flows.
double TubingFootPressure(const TubingSpec& tubing, const Gravities& gravities, double headPressure,
                          const Rates& rates);

}  // namespace gantry::fieldrun
