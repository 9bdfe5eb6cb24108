#pragma once

#include <functional>

#include "tanksim/lookup_table.h"

namespace gantry::simulator {

/// What the wells of a tank see of a displacing fluid.
struct FrontView {
  double sweptFraction = 0.0;  ///< of the flow towards a well, the part behind the front
  double saturation = 0.0;     ///< of the displacing fluid in that part
};

/// A displacement from injectors towards producers as they see it, given nothing but the average
/// saturation of the displacing fluid in the tank.
///
/// Behind the front the saturation at the producer follows from the average by Welge's tangent
/// construction on the fractional flow (Buckley and Leverett 1942; Welge, Transactions AIME 195,
/// 1952): S_average = S_outlet + (1 - f) / f'. Only a part of the volume is swept at breakthrough,
/// and that part grows by 0.633 for each tenfold of the displaced volume (Craig, Geffen and Morse,
/// Transactions AIME 204, 1955).
class Displacement {
 public:
  Displacement() = default;
  /// `fractionalFlow` of the displacing fluid over its saturation, from 0 to 1 and rising; its
  /// share of the flow. `sweepAtBreakthrough` is above 0 and at most 1.
  Displacement(const std::function<double(double)>& fractionalFlow, double initialSaturation,
               double largestSaturation, double sweepAtBreakthrough);

  FrontView At(double averageSaturation) const;

 private:
  double initial_ = 0.0;
  double sweep_ = 1.0;
  double averageAtFront_ = 1.0;  ///< of the swept part, when the front arrives
  LookupTable outlet_;           ///< outlet saturation over the average of the swept part
};

}  // namespace gantry::simulator
