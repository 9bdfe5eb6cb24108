#include "tanksim/tubing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tanksim/constants.h"

namespace gantry::simulator {

namespace {

constexpr double kMoodyFriction = 0.02;
constexpr double kTubingDeviationFactor = 0.9;  // of gas, between reservoir and surface
constexpr int kPasses = 4;                      // towards the mean pressure of the column

/// ft3/d of the mixture at a pressure.
double VolumeRate(const TubingStream& stream, double pressure) {
  // Dissolved gas grows about in proportion to pressure up to the bubble point (Standing 1947).
  const double share =
      stream.bubblePoint > 0.0 ? std::min(1.0, pressure / stream.bubblePoint) : 0.0;
  const double freeGas = std::max(0.0, stream.gas - stream.oil * stream.dissolvedGas * share);
  const double oilFactor = 1.0 + (stream.oilFactor - 1.0) * share;
  const double gasFactor = kCubicFeetPerMscf * kStandardPressure /
                           (kStandardTemperature + kFahrenheitToRankine) * kTubingDeviationFactor *
                           (stream.temperature + kFahrenheitToRankine) / pressure;
  return kCubicFeetPerBarrel * (stream.oil * oilFactor + stream.water) + freeGas * gasFactor;
}

double PressureLoss(const Tubing& tubing, const TubingStream& stream, double meanPressure,
                    double direction) {
  const double volume = VolumeRate(stream, meanPressure);
  const double density = stream.mass / volume;
  double gradient = density / kSquareInchesPerSquareFoot;
  if (tubing.diameter > 0.0) {
    const double area = std::numbers::pi / 4.0 * tubing.diameter * tubing.diameter;
    const double velocity = volume / kSecondsPerDay / area;
    gradient += direction * kMoodyFriction * density * velocity * velocity /
                (2.0 * kGravity * tubing.diameter * kSquareInchesPerSquareFoot);
  }
  return gradient * tubing.depth;
}

}  // namespace

double TubingHeadPressure(const Tubing& tubing, const TubingStream& stream,
                          double bottomHolePressure, double direction) {
  if (tubing.depth <= 0.0 || stream.mass <= 0.0) return bottomHolePressure;
  double head = bottomHolePressure;
  for (int pass = 0; pass < kPasses; ++pass) {
    const double mean = std::max(kStandardPressure, 0.5 * (bottomHolePressure + head));
    head = bottomHolePressure - PressureLoss(tubing, stream, mean, direction);
    head = std::max(kStandardPressure, head);
  }
  return head;
}

}  // namespace gantry::simulator
