#pragma once

#include "tanksim/black_oil.h"
#include "tanksim/equation_of_state.h"
#include "tanksim/reservoir_fluid.h"

namespace gantry::simulator {

struct CompositionalData {
  EosData eos;
  WaterData water;
};

/// The compositional model: component moles, split into phases by an equation of state, both in the
/// tank and at the surface, where one flash at standard conditions separates oil from gas.
class CompositionalFluid : public ReservoirFluid {
 public:
  explicit CompositionalFluid(const CompositionalData& data)
      : ReservoirFluid(data.water), eos_(data.eos) {}

  Contents Fill(const InitialState& initial) const override;
  double Volume(const Contents& contents, double pressure, double temperature) const override;
  FluidState State(const Contents& contents, double pressure, double temperature) const override;
  InjectedGas Injected(const std::vector<double>& composition, double pressure,
                       double temperature) const override;

 private:
  PhaseStream Stream(const PhaseResult& phase) const;
  double BubblePoint(const std::vector<double>& fractions, double pressure,
                     double temperature) const;

  EquationOfState eos_;
};

}  // namespace gantry::simulator
