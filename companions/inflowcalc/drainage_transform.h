#pragma once

#include <optional>

#include "inflowcalc/inflow_rows.h"

// From the inflow of a grid block to the inflow of a drainage region.
//
// A simulator computes a well's rate against the pressure of the block that holds it. Peaceman
// (SPEJ, June 1978, p. 183, and for blocks that aren't square SPEJ, June 1983, p. 531) showed that
// this is the pressure of steady radial flow at an equivalent radius ro, about 0.2 block widths:
//
//   q = c (pBlock - pw) / (ln(ro / rw) + S),      c = 0.00708 k h / (mu B)
//
// The block's pressure follows the well's rate within days, so a curve that is measured with the
// block held still promises more rate for a lower pressure than the well can keep up. What the
// well keeps up is the pseudo-steady state of its drainage region of area A and shape CA (Dietz,
// JPT, August 1965, p. 955), against the region's mean pressure:
//
//   q = c (pRegion - pw) / (ln(4 A / (e^0.5772 CA rw^2)) / 2 + S)
//
// The ratio of the two productivity indices
//
//   R = J(region) / J(block) = (ln(ro / rw) + S) / (ln(4 A / (e^0.5772 CA rw^2)) / 2 + S)
//
// holds neither rate nor fluid nor permeability, so one number for a well serves all its tables.
// At any one moment both lines go through the state in which the well stands, (q*, p*): that is
// the pivot. Hence, at each rate, the drawdown beyond the pivot grows by 1 / R:
//
//   p(region) = p* + (p(block) - p*) / R
//
// which also serves a curved (Vogel) table, and keeps the order of its pressures.

namespace gantry::inflow {

/// The bounds of a credible ratio. At 1 block and region are the same and no table changes.
inline constexpr double kLeastRatio = 0.05;
inline constexpr double kGreatestRatio = 1.0;

/// The ratio seen in a test: a well flowed at `flowing` while its block stood at `block`, and the
/// region came to rest at `region` after it was shut. Both drawdowns are for the same rate, so
/// their quotient is that of the indices. None when the drawdowns are too small to tell.
std::optional<double> RatioFromTest(double flowing, double block, double region);

/// Turns a table of block pressures into one of the drainage region, about the place of
/// `currentRate` on it. Points beyond the pressure at which the simulator itself limits the well,
/// that of its highest rate, give way to one point there. False, and no change, when the rows are
/// no inflow curve or nothing of it would be left.
bool TransformToRegion(InflowRows& rows, double ratio, double currentRate);

}  // namespace gantry::inflow
