#include "flowlink/flow_items.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include "client/words.h"

namespace gantry::flowlink {

namespace {

enum Vector : size_t {
  kOil,
  kGas,
  kWater,
  kReservoir,
  kInjectedWater,
  kInjectedGas,
  kInjectedOil,
  kInjectedReservoir,
  kBottomHole,
  kTubingHead,
  kOilTotal,
  kGasTotal,
  kWaterTotal,
  kReservoirTotal,
  kInjectedWaterTotal,
  kInjectedGasTotal,
  kInjectedOilTotal,
  kInjectedReservoirTotal,
  kStatus,
  kVectorCount
};
using Values = std::vector<double>;

constexpr std::pair<Vector, const char*> kVectorNames[] = {
    {kOil, "WOPR"},
    {kGas, "WGPR"},
    {kWater, "WWPR"},
    {kReservoir, "WVPR"},
    {kInjectedWater, "WWIR"},
    {kInjectedGas, "WGIR"},
    {kInjectedOil, "WOIR"},
    {kInjectedReservoir, "WVIR"},
    {kBottomHole, "WBHP"},
    {kTubingHead, "WTHP"},
    {kOilTotal, "WOPT"},
    {kGasTotal, "WGPT"},
    {kWaterTotal, "WWPT"},
    {kReservoirTotal, "WVPT"},
    {kInjectedWaterTotal, "WWIT"},
    {kInjectedGasTotal, "WGIT"},
    {kInjectedOilTotal, "WOIT"},
    {kInjectedReservoirTotal, "WVIT"},
    {kStatus, "WSTAT"},
};
static_assert(std::size(kVectorNames) == kVectorCount);

double Ratio(double part, double whole) { return whole > 0.0 ? part / whole : 0.0; }

template <Vector vector>
double Plain(const Values& values) {
  return values[vector];
}

struct Item {
  std::string_view name;
  double (*value)(const Values&);
};
constexpr auto kItems = std::to_array<Item>({
    {words::kOilProductionRate, Plain<kOil>},
    {words::kGasProductionRate, Plain<kGas>},
    {words::kWaterProductionRate, Plain<kWater>},
    {words::kLiquidProductionRate, [](const Values& v) { return v[kOil] + v[kWater]; }},
    {words::kReservoirProductionRate, Plain<kReservoir>},
    {words::kWaterInjectionRate, Plain<kInjectedWater>},
    {words::kGasInjectionRate, Plain<kInjectedGas>},
    {words::kOilInjectionRate, Plain<kInjectedOil>},
    {words::kReservoirInjectionRate, Plain<kInjectedReservoir>},
    {words::kBottomHolePressure, Plain<kBottomHole>},
    {words::kTubingHeadPressure, Plain<kTubingHead>},
    {"OIL_PRODUCTION_CUML", Plain<kOilTotal>},
    {"GAS_PRODUCTION_CUML", Plain<kGasTotal>},
    {"WATER_PRODUCTION_CUML", Plain<kWaterTotal>},
    {"LIQUID_PRODUCTION_CUML", [](const Values& v) { return v[kOilTotal] + v[kWaterTotal]; }},
    {"RES_VOLUME_PRODUCTION_CUML", Plain<kReservoirTotal>},
    {"WATER_INJECTION_CUML", Plain<kInjectedWaterTotal>},
    {"GAS_INJECTION_CUML", Plain<kInjectedGasTotal>},
    {"OIL_INJECTION_CUML", Plain<kInjectedOilTotal>},
    {"RES_VOLUME_INJECTION_CUML", Plain<kInjectedReservoirTotal>},
    {"GAS_OIL_RATIO", [](const Values& v) { return Ratio(v[kGas], v[kOil]); }},
    {"WATER_CUT", [](const Values& v) { return Ratio(v[kWater], v[kOil] + v[kWater]); }},
    {"WATER_OIL_RATIO", [](const Values& v) { return Ratio(v[kWater], v[kOil]); }},
});

constexpr double kLeastSpan = 0.01;   // of a pressure
constexpr double kLeastWhole = 1e-3;  // in any unit: less is the solver's noise

double Share(double difference, double whole) {
  return whole > kLeastWhole ? std::abs(difference) / whole : 0.0;
}

}  // namespace

const std::vector<std::string>& SummaryVectors() {
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> names(kVectorCount);
    for (const auto& [vector, name] : kVectorNames) names[vector] = name;
    return names;
  }();
  return kNames;
}

std::optional<size_t> FindFlowItem(std::string_view item) {
  for (size_t i = 0; i < kItems.size(); ++i) {
    if (kItems[i].name == item) return i;
  }
  return std::nullopt;
}

bool IsShutInFlow(const std::vector<double>& vectors) {
  constexpr double kShut = 3.0;
  return vectors[kStatus] == kShut;
}

double FlowItemValue(size_t handle, const std::vector<double>& vectors) {
  return kItems[handle].value(vectors);
}

double MissOf(const Values& guess, const Values& found, const Values& top, const Values& bottom) {
  const auto missOf = [&](size_t vector, double whole) {
    return Share(guess[vector] - found[vector], whole);
  };
  const double liquid = std::abs(found[kOil] + found[kWater]);
  double miss = std::max(missOf(kOil, liquid), missOf(kWater, liquid));
  for (const size_t rate : {kGas, kInjectedWater, kInjectedGas, kInjectedOil}) {
    miss = std::max(miss, missOf(rate, std::abs(found[rate])));
  }
  for (const size_t pressure : {kBottomHole, kTubingHead}) {
    const double span = std::abs(top[pressure] - bottom[pressure]);
    miss = std::max(miss, missOf(pressure, std::max(span, kLeastSpan * std::abs(top[pressure]))));
  }
  return miss;
}

void CopyTotals(const Values& from, Values& to) {
  constexpr std::ptrdiff_t kEnd = kInjectedReservoirTotal + 1;
  std::copy(from.begin() + kOilTotal, from.begin() + kEnd, to.begin() + kOilTotal);
}

}  // namespace gantry::flowlink
