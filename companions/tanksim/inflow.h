#pragma once

namespace gantry::simulator {

/// How much of each phase moves towards a well, at reservoir conditions: rb/d for each psi of
/// drawdown near the reservoir pressure.
struct PhaseInflow {
  double liquid = 0.0;
  double vapour = 0.0;
  double water = 0.0;
};

/// The inflow of a producer at a frozen state of its tank.
///
/// Hydrocarbons follow phi(p), a drawdown that is straight down to a bend pressure and curved below
/// it; water follows the straight drawdown d(p) = reservoir pressure - p (the composite inflow of
/// Brown, The Technology of Artificial Lift Methods, volume 4, section 2.2). With u = 1 - p / bend,
///   phi(p) = (reservoir pressure - bend) + bend (u - curvature u^2)        below the bend,
/// where the curvature is 4/9 for Vogel's solution-gas drive (Vogel, Journal of Petroleum
/// Technology, January 1968: 1 - 0.2 x - 0.8 x^2, here with slope 1 at the bend), and 1/2 for dry
/// gas, which makes phi the pressure-squared deliverability of Rawlins and Schellhardt (1936).
/// All of it falls as the bottom-hole pressure rises, to nothing at the reservoir pressure.
class Inflow {
 public:
  static constexpr double kVogelCurvature = 4.0 / 9.0;
  static constexpr double kDryGasCurvature = 0.5;

  Inflow() = default;
  Inflow(double reservoirPressure, double bendPressure, double curvature)
      : reservoirPressure_(reservoirPressure), bend_(bendPressure), curvature_(curvature) {}

  double ReservoirPressure() const { return reservoirPressure_; }
  double HydrocarbonDrawdown(double pressure) const;
  double WaterDrawdown(double pressure) const;

  /// The bottom-hole pressure at which `hydrocarbonIndex` x phi + `waterIndex` x d comes to `rate`;
  /// 0 when no pressure gives that much.
  double PressureFor(double rate, double hydrocarbonIndex, double waterIndex) const;

 private:
  double reservoirPressure_ = 0.0;
  double bend_ = 0.0;
  double curvature_ = 0.0;
};

}  // namespace gantry::simulator
