#include "flowlink/flow_items.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

/// A summary vector, and the protocol's name for its number; flow's status has none.
struct VectorRow {
  Vector vector;
  const char* name;
  std::string_view item;
};
constexpr VectorRow kVectors[] = {
    {kOil, "WOPR", words::kOilProductionRate},
    {kGas, "WGPR", words::kGasProductionRate},
    {kWater, "WWPR", words::kWaterProductionRate},
    {kReservoir, "WVPR", words::kReservoirProductionRate},
    {kInjectedWater, "WWIR", words::kWaterInjectionRate},
    {kInjectedGas, "WGIR", words::kGasInjectionRate},
    {kInjectedOil, "WOIR", words::kOilInjectionRate},
    {kInjectedReservoir, "WVIR", words::kReservoirInjectionRate},
    {kBottomHole, "WBHP", words::kBottomHolePressure},
    {kTubingHead, "WTHP", words::kTubingHeadPressure},
    {kOilTotal, "WOPT", "OIL_PRODUCTION_CUML"},
    {kGasTotal, "WGPT", "GAS_PRODUCTION_CUML"},
    {kWaterTotal, "WWPT", "WATER_PRODUCTION_CUML"},
    {kReservoirTotal, "WVPT", "RES_VOLUME_PRODUCTION_CUML"},
    {kInjectedWaterTotal, "WWIT", "WATER_INJECTION_CUML"},
    {kInjectedGasTotal, "WGIT", "GAS_INJECTION_CUML"},
    {kInjectedOilTotal, "WOIT", "OIL_INJECTION_CUML"},
    {kInjectedReservoirTotal, "WVIT", "RES_VOLUME_INJECTION_CUML"},
    {kStatus, "WSTAT", {}},
};
static_assert(std::size(kVectors) == kVectorCount);

double Ratio(double part, double whole) { return whole > 0.0 ? part / whole : 0.0; }

/// What is made of several vectors; the handles count on from theirs.
struct ComputedItem {
  std::string_view name;
  double (*value)(const Values&);
};
constexpr ComputedItem kComputed[] = {
    {words::kLiquidProductionRate, [](const Values& v) { return v[kOil] + v[kWater]; }},
    {"LIQUID_PRODUCTION_CUML", [](const Values& v) { return v[kOilTotal] + v[kWaterTotal]; }},
    {"GAS_OIL_RATIO", [](const Values& v) { return Ratio(v[kGas], v[kOil]); }},
    {"WATER_CUT", [](const Values& v) { return Ratio(v[kWater], v[kOil] + v[kWater]); }},
    {"WATER_OIL_RATIO", [](const Values& v) { return Ratio(v[kWater], v[kOil]); }},
};

constexpr double kLeastSpan = 0.01;   // of a pressure
constexpr double kLeastWhole = 1e-3;  // in any unit: less is the solver's noise

double Share(double difference, double whole) {
  return whole > kLeastWhole ? std::abs(difference) / whole : 0.0;
}

}  // namespace

const std::vector<std::string>& SummaryVectors() {
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> names(kVectorCount);
    for (const VectorRow& row : kVectors) names[row.vector] = row.name;
    return names;
  }();
  return kNames;
}

std::optional<size_t> FindFlowItem(std::string_view item) {
  if (item.empty()) return std::nullopt;
  const auto* const row = std::ranges::find(kVectors, item, &VectorRow::item);
  if (row != std::end(kVectors)) return row->vector;
  const auto* const computed = std::ranges::find(kComputed, item, &ComputedItem::name);
  if (computed == std::end(kComputed)) return std::nullopt;
  return kVectorCount + static_cast<size_t>(computed - kComputed);
}

bool IsShutInFlow(const std::vector<double>& vectors) {
  constexpr double kShut = 3.0;
  return vectors[kStatus] == kShut;
}

double FlowItemValue(size_t handle, const std::vector<double>& vectors) {
  return handle < kVectorCount ? vectors[handle] : kComputed[handle - kVectorCount].value(vectors);
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
