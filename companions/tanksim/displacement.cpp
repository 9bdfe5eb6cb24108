#include "tanksim/displacement.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace gantry::simulator {

namespace {

constexpr int kPoints = 400;
constexpr double kCraigGrowth = 0.633;
/// The share of the volume at breakthrough over which heterogeneity spreads the front's arrival.
constexpr double kFrontWidth = 0.15;

struct Tangent {
  double saturation;
  double average;
};

/// The steepest line from the initial state to the fractional flow: the front, and the average
/// behind it where that line reaches 1.
Tangent FindFront(const std::function<double(double)>& flow, double initial, double largest) {
  const double initialFlow = flow(initial);
  double steepest = 0.0;
  double front = largest;
  for (int i = 1; i <= kPoints; ++i) {
    const double saturation = initial + (largest - initial) * i / kPoints;
    const double slope = (flow(saturation) - initialFlow) / (saturation - initial);
    if (slope <= steepest) continue;
    steepest = slope;
    front = saturation;
  }
  if (steepest <= 0.0) return {largest, largest};
  return {front, std::min(largest, initial + (1.0 - initialFlow) / steepest)};
}

}  // namespace

Displacement::Displacement(const std::function<double(double)>& fractionalFlow,
                           double initialSaturation, double largestSaturation,
                           double sweepAtBreakthrough)
    : initial_(initialSaturation), sweep_(sweepAtBreakthrough) {
  const Tangent front = FindFront(fractionalFlow, initialSaturation, largestSaturation);
  averageAtFront_ = front.average;
  std::vector<double> averages = {front.average};
  std::vector<double> outlets = {front.saturation};
  const double step = (largestSaturation - initialSaturation) / kPoints;
  for (double s = front.saturation + step; s < largestSaturation; s += step) {
    const double slope = (fractionalFlow(s + step) - fractionalFlow(s - step)) / (2.0 * step);
    if (slope <= 0.0) break;
    const double average = s + (1.0 - fractionalFlow(s)) / slope;
    // Corners of a tabulated fractional flow give short stretches that fall back; they are passed.
    if (average <= averages.back() || average > largestSaturation) continue;
    averages.push_back(average);
    outlets.push_back(s);
  }
  outlet_ = LookupTable(std::move(averages), std::move(outlets));
}

FrontView Displacement::At(double averageSaturation) const {
  const double displaced = averageSaturation - initial_;
  const double atBreakthrough = sweep_ * (averageAtFront_ - initial_);
  if (atBreakthrough <= 0.0) return {0.0, initial_};
  const double ratio = displaced / atBreakthrough;
  if (ratio <= 1.0 - kFrontWidth) return {0.0, initial_};
  const double arrived = std::min(1.0, (ratio - (1.0 - kFrontWidth)) / kFrontWidth);
  const double grown = ratio > 1.0 ? kCraigGrowth * std::log10(ratio) : 0.0;
  const double swept = std::min(1.0, sweep_ + grown);
  return {arrived * swept, outlet_.At(initial_ + displaced / swept)};
}

}  // namespace gantry::simulator
