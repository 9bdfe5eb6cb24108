#pragma once

namespace gantry::simulator {

/// What stands or flows in a well's tubing, by its surface rates. Field units.
struct TubingStream {
  double oil = 0.0;            ///< stb/d
  double gas = 0.0;            ///< Mscf/d, dissolved gas included
  double water = 0.0;          ///< stb/d
  double mass = 0.0;           ///< lb/d
  double temperature = 100.0;  ///< degrees Fahrenheit
  double oilFactor = 1.0;      ///< rb/stb at the reservoir's pressure
  double dissolvedGas = 0.0;   ///< Mscf/stb there
  double bubblePoint = 0.0;    ///< psia
};

struct Tubing {
  double depth = 0.0;     ///< ft, vertical; 0 for a well without one
  double diameter = 0.0;  ///< ft; 0 for no friction
};

/// The pressure at the head of the tubing for a pressure at its foot: the weight of a homogeneous
/// mixture without slip, and its friction by Darcy and Weisbach with a constant factor (Brown, The
/// Technology of Artificial Lift Methods, volume 1, chapter 2). `direction` is 1 for upward flow
/// and -1 for injection. Never below the standard pressure.
double TubingHeadPressure(const Tubing& tubing, const TubingStream& stream,
                          double bottomHolePressure, double direction);

}  // namespace gantry::simulator
