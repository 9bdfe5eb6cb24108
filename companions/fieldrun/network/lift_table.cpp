#include "fieldrun/network/lift_table.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "fieldrun/network/network.h"

namespace gantry::fieldrun {
namespace {

constexpr size_t kPoints = 4;             // of a cubic
constexpr double kBarrelsPerMMscf = 150;  // as Rates::Size counts gas

/// One direction of the grid: `count` points from `first` on, so far apart.
struct Axis {
  double first;
  double step;
  size_t count;

  double At(size_t index) const { return first + step * static_cast<double>(index); }
};

constexpr Axis kFlow = {0, 0.2, 71};  // logarithm of barrels a day
constexpr Axis kWaterCut = {0, 1.0 / 16, 17};
constexpr Axis kGas = {0, 1.0 / 80, 81};  // cube root of its share in what flows
constexpr size_t kNodeCount = kFlow.count * kWaterCut.count * kGas.count;

size_t Index(size_t flow, size_t waterCut, size_t gas) {
  return (gas * kWaterCut.count + waterCut) * kFlow.count + flow;
}

LiftTable::Stencil Around(const Axis& axis, double value) {
  const double place = (value - axis.first) / axis.step;
  const double first =
      std::clamp(std::floor(place) - 1, 0.0, static_cast<double>(axis.count - kPoints));
  const double t = place - first;
  return {static_cast<size_t>(first),
          {-(t - 1) * (t - 2) * (t - 3) / 6, t * (t - 2) * (t - 3) / 2, -t * (t - 1) * (t - 3) / 2,
           t * (t - 1) * (t - 2) / 6}};
}

Rates RatesAt(size_t flow, size_t waterCut, size_t gas) {
  const double size = std::exp(kFlow.At(flow));
  const double share = std::pow(kGas.At(gas), 3);
  const double liquid = size * (1 - share);
  const double water = liquid * kWaterCut.At(waterCut);
  return {liquid - water, water, size * share / kBarrelsPerMMscf};
}

int64_t Millionths(double gravity) { return std::llround(1e6 * gravity); }

}  // namespace

LiftTable::LiftTable(const TubingSpec& tubing, const Gravities& gravities, double headPressure)
    : headPressure_(headPressure),
      column_(tubing, gravities),
      nodes_(kNodeCount, std::numeric_limits<double>::quiet_NaN()) {}

double LiftTable::FootPressure(const Rates& rates) {
  const double size = rates.Size();
  const double place = std::log(size);
  if (!(place >= kFlow.first && place < kFlow.At(kFlow.count - 1))) {
    return column_.FootPressure(headPressure_, rates);
  }
  const double liquid = rates.Liquid();
  const Stencil flow = Around(kFlow, place);
  const Stencil waterCut = Around(kWaterCut, liquid > 0 ? rates.water / liquid : 0);
  const Stencil gas = Around(kGas, std::cbrt(kBarrelsPerMMscf * rates.gas / size));
  double logarithm = Interpolate(flow, waterCut, gas);
  if (std::isnan(logarithm)) {
    March(flow.first, waterCut.first, gas.first);
    logarithm = Interpolate(flow, waterCut, gas);
  }
  return std::exp(logarithm) - kAtmosphere;
}

double LiftTable::Interpolate(const Stencil& flow, const Stencil& waterCut,
                              const Stencil& gas) const {
  double sum = 0;
  for (size_t k = 0; k < kPoints; ++k) {
    for (size_t j = 0; j < kPoints; ++j) {
      const double* row = &nodes_[Index(flow.first, waterCut.first + j, gas.first + k)];
      double along = 0;
      for (size_t i = 0; i < kPoints; ++i) along += flow.weights[i] * row[i];
      sum += gas.weights[k] * waterCut.weights[j] * along;
    }
  }
  return sum;
}

void LiftTable::March(size_t flow, size_t waterCut, size_t gas) {
  for (size_t k = gas; k < gas + kPoints; ++k) {
    for (size_t j = waterCut; j < waterCut + kPoints; ++j) {
      for (size_t i = flow; i < flow + kPoints; ++i) {
        double& node = nodes_[Index(i, j, k)];
        if (!std::isnan(node)) continue;
        node = std::log(column_.FootPressure(headPressure_, RatesAt(i, j, k)) + kAtmosphere);
      }
    }
  }
}

void LiftTables::Assign(std::vector<NetworkWell>& wells) {
  constexpr size_t kFewestWells = 16;  // below, a table's points are more than are asked for
  std::map<Key, std::vector<NetworkWell*>> sharing;
  for (NetworkWell& well : wells) {
    const Gravities& g = well.gravities;
    if (well.tubing == nullptr || well.tubing->table) continue;
    sharing[{well.tubing, well.manifoldPressure, Millionths(g.oil), Millionths(g.gas),
             Millionths(g.water)}]
        .push_back(&well);
  }
  std::erase_if(tables_, [&](const auto& table) { return !sharing.contains(table.first); });
  for (const auto& [key, members] : sharing) {
    if (members.size() < kFewestWells) continue;
    const NetworkWell& any = *members.front();
    auto& table = tables_[key];
    if (!table) {
      table = std::make_unique<LiftTable>(*any.tubing, any.gravities, any.manifoldPressure);
    }
    for (NetworkWell* well : members) well->lift = table.get();
  }
}

}  // namespace gantry::fieldrun
