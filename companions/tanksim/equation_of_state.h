#pragma once

#include <string>
#include <vector>

namespace gantry::simulator {

/// One component. Temperatures in degrees Fahrenheit, pressures in psia, volumes in ft3/lb-mol.
struct ComponentData {
  std::string name;
  double molecularWeight = 0.0;
  double criticalTemperature = 0.0;
  double criticalPressure = 0.0;
  double criticalVolume = 0.0;
  double acentricFactor = 0.0;
  double boilingPoint = 0.0;
  double volumeShift = 0.0;  ///< as a share of the component's b
  double parachor = 0.0;
};

struct EosData {
  std::string name = "PENG_ROBINSON";  ///< or "SOAVE_REDLICH_KWONG"
  std::vector<ComponentData> components;
  std::vector<double> binaryInteraction;  ///< the lower triangle, row by row
};

/// One phase of a mixture.
struct PhaseResult {
  double moleShare = 0.0;  ///< of all moles
  std::vector<double> fractions;
  double molarVolume = 0.0;  ///< ft3/lb-mol
  double molarMass = 0.0;    ///< lb/lb-mol
};

struct FlashResult {
  PhaseResult liquid;
  PhaseResult vapour;
};

/// A cubic equation of state in the two-parameter form of Peng and Robinson (1976) or Soave (1972),
/// with van der Waals mixing and the volume shift of Peneloux (1982). Psia, degrees Fahrenheit.
class EquationOfState {
 public:
  explicit EquationOfState(const EosData& data);

  size_t ComponentCount() const { return data_.components.size(); }
  const EosData& Data() const { return data_; }
  double OmegaA() const { return omegaA_; }
  double OmegaB() const { return omegaB_; }

  /// The phases of a mixture at rest, by successive substitution from Wilson's ratios, with a
  /// phase share that may pass 0 and 1 on the way (Whitson and Michelsen, Fluid Phase Equilibria
  /// 53, 1989). A single phase is liquid when it is denser than at its pseudo-critical point and
  /// colder than the volume-weighted critical temperature of Li (Canadian Journal of Chemical
  /// Engineering 49, 1971).
  FlashResult Flash(const std::vector<double>& fractions, double pressure,
                    double temperature) const;

  /// cp, of a phase by the method of Lohrenz, Bray and Clark (Journal of Petroleum Technology,
  /// October 1964).
  double Viscosity(const PhaseResult& phase, double temperature) const;

 private:
  struct Mixing;
  struct PhaseState {
    double compressibility = 0.0;
    std::vector<double> logFugacity;
  };
  /// A trial of two phases.
  struct Split {
    std::vector<double> ratios;  ///< of vapour to liquid fractions
    std::vector<double> liquid;
    std::vector<double> vapour;
    double vapourShare = 0.0;
    bool isTwoPhase = false;
  };
  enum class Root { kLiquid, kVapour, kStable };

  Mixing Prepare(double pressure, double temperature) const;
  PhaseState Solve(const Mixing& mixing, const std::vector<double>& fractions, Root root) const;
  std::vector<double> WilsonRatios(double pressure, double temperature) const;
  /// One step; false when the next one would change nothing.
  bool Substitute(const Mixing& mixing, const std::vector<double>& fractions, Split& split) const;
  double Interaction(size_t i, size_t j) const;
  bool IsLiquid(const PhaseResult& phase, double temperature) const;
  PhaseResult MakePhase(const Mixing& mixing, std::vector<double> fractions, double share,
                        Root root) const;

  EosData data_;
  double omegaA_;
  double omegaB_;
  double delta1_;
  double delta2_;
};

}  // namespace gantry::simulator
