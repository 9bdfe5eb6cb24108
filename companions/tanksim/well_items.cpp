#include "tanksim/well_items.h"

#include <array>
#include <cmath>
#include <numeric>

#include "simulator_side/well_words.h"
#include "text/number_text.h"

namespace gantry::simulator {

namespace {

double Ratio(double numerator, double denominator) {
  return denominator > 0.0 ? numerator / denominator : 0.0;
}

double Drawdown(const Well& well) {
  return std::abs(well.Reservoir().Pressure() - well.Flow().bottomHolePressure);
}

const WellVolumes& Rates(const Well& well) { return well.Flow().rates; }

struct WellItem {
  std::string_view name;
  Quantity quantity;
  double (*value)(const Well&);
};

constexpr auto kNumber = Quantity::kNone;
constexpr auto kLiquid = Quantity::kLiquid;
constexpr auto kGas = Quantity::kGas;
constexpr auto kReservoir = Quantity::kReservoirVolume;
constexpr auto kPressure = Quantity::kPressure;

constexpr std::array kItems = std::to_array<WellItem>({
    {words::kOilProductionRate, kLiquid, [](const Well& w) { return Rates(w).oil; }},
    {words::kGasProductionRate, kGas, [](const Well& w) { return Rates(w).gas; }},
    {words::kWaterProductionRate, kLiquid, [](const Well& w) { return Rates(w).water; }},
    {words::kLiquidProductionRate, kLiquid,
     [](const Well& w) { return Rates(w).oil + Rates(w).water; }},
    {words::kReservoirProductionRate, kReservoir,
     [](const Well& w) { return Rates(w).reservoirProduction; }},
    {words::kOilInjectionRate, kLiquid, [](const Well&) { return 0.0; }},
    {words::kGasInjectionRate, kGas, [](const Well& w) { return Rates(w).injectedGas; }},
    {words::kWaterInjectionRate, kLiquid, [](const Well& w) { return Rates(w).injectedWater; }},
    {words::kReservoirInjectionRate, kReservoir,
     [](const Well& w) { return Rates(w).reservoirInjection; }},
    {"OIL_PRODUCTION_CUML", kLiquid, [](const Well& w) { return w.Totals().oil; }},
    {"GAS_PRODUCTION_CUML", kGas, [](const Well& w) { return w.Totals().gas; }},
    {"WATER_PRODUCTION_CUML", kLiquid, [](const Well& w) { return w.Totals().water; }},
    {"LIQUID_PRODUCTION_CUML", kLiquid,
     [](const Well& w) { return w.Totals().oil + w.Totals().water; }},
    {"RES_VOLUME_PRODUCTION_CUML", kReservoir,
     [](const Well& w) { return w.Totals().reservoirProduction; }},
    {"OIL_INJECTION_CUML", kLiquid, [](const Well&) { return 0.0; }},
    {"GAS_INJECTION_CUML", kGas, [](const Well& w) { return w.Totals().injectedGas; }},
    {"WATER_INJECTION_CUML", kLiquid, [](const Well& w) { return w.Totals().injectedWater; }},
    {"RES_VOLUME_INJECTION_CUML", kReservoir,
     [](const Well& w) { return w.Totals().reservoirInjection; }},
    {words::kBottomHolePressure, kPressure,
     [](const Well& w) { return w.Flow().bottomHolePressure; }},
    {words::kTubingHeadPressure, kPressure,
     [](const Well& w) { return w.Flow().tubingHeadPressure; }},
    {"DRAWDOWN_PIW", kPressure, Drawdown},
    {"DRAWDOWN_REG", kPressure, Drawdown},
    {"GAS_OIL_RATIO", Quantity::kGasPerLiquid,
     [](const Well& w) { return Ratio(Rates(w).gas, Rates(w).oil); }},
    {"WATER_CUT", kNumber,
     [](const Well& w) { return Ratio(Rates(w).water, Rates(w).oil + Rates(w).water); }},
    {"WATER_OIL_RATIO", kNumber, [](const Well& w) { return Ratio(Rates(w).water, Rates(w).oil); }},
    {words::kUptimeFraction, kNumber, [](const Well& w) { return w.Uptime(); }},
    {words::kTemperature, Quantity::kSimulatorTemperature,
     [](const Well& w) { return w.Temperature(); }},
    {words::kOilDensity, Quantity::kDensity, [](const Well& w) { return w.OilDensity(); }},
    {words::kGasDensity, Quantity::kDensity, [](const Well& w) { return w.GasDensity(); }},
    {words::kWaterDensity, Quantity::kDensity,
     [](const Well& w) { return w.Reservoir().Fluid().WaterDensity(); }},
});

double PhaseMoles(const Well& well, size_t component, std::vector<double> PhaseStream::*moles) {
  const FluidState& state = well.Reservoir().State();
  const WellFlow& flow = well.Flow();
  return flow.liquid * (state.liquid.*moles)[component] +
         flow.vapour * (state.vapour.*moles)[component];
}

/// Of what the well flows; at rest, of what it would flow at the least drawdown.
double TotalMoleFraction(const Well& well, size_t component) {
  if (well.Data().type == WellType::kGasInjector) {
    const std::vector<double>& injected = well.InjectedComposition();
    return component < injected.size() ? injected[component] : 0.0;
  }
  if (well.Data().type == WellType::kWaterInjector) return 0.0;
  const FluidState& state = well.Reservoir().State();
  double liquid = well.Flow().liquid;
  double vapour = well.Flow().vapour;
  if (liquid + vapour <= 0.0) {
    liquid = well.Reservoir().Mobility().liquid;
    vapour = well.Reservoir().Mobility().vapour;
  }
  const auto sum = [](const Amounts& amounts) {
    return std::accumulate(amounts.begin(), amounts.end(), 0.0);
  };
  const Amounts& inLiquid = state.liquid.hydrocarbons;
  const Amounts& inVapour = state.vapour.hydrocarbons;
  return Ratio(liquid * inLiquid[component] + vapour * inVapour[component],
               liquid * sum(inLiquid) + vapour * sum(inVapour));
}

struct ComponentItem {
  std::string_view name;
  Quantity quantity;
  double (*value)(const Well&, size_t component);
};
constexpr std::array kComponentItems = std::to_array<ComponentItem>({
    {"TOTAL_MOLE_FRACTION", kNumber, TotalMoleFraction},
    {"GAS_COMPONENT_MOLAR_RATE", Quantity::kMoles,
     [](const Well& w, size_t i) { return PhaseMoles(w, i, &PhaseStream::gasMoles); }},
    {"OIL_COMPONENT_MOLAR_RATE", Quantity::kMoles,
     [](const Well& w, size_t i) { return PhaseMoles(w, i, &PhaseStream::oilMoles); }},
});

/// "NAME[i]" as NAME and i - 1.
std::optional<std::pair<std::string_view, size_t>> SplitElement(std::string_view item) {
  const size_t bracket = item.find('[');
  if (bracket == std::string_view::npos || item.back() != ']') return std::nullopt;
  const auto element = ParseNumber<size_t>(item.substr(bracket + 1, item.size() - bracket - 2));
  if (!element || *element == 0) return std::nullopt;
  return std::pair(item.substr(0, bracket), *element - 1);
}

}  // namespace

std::optional<size_t> WellItems::Find(std::string_view item) const {
  for (size_t i = 0; i < kItems.size(); ++i) {
    if (kItems[i].name == item) return i;
  }
  const auto element = SplitElement(item);
  if (!element || element->second >= componentCount_) return std::nullopt;
  for (size_t i = 0; i < kComponentItems.size(); ++i) {
    if (kComponentItems[i].name == element->first) {
      return kItems.size() + element->second * kComponentItems.size() + i;
    }
  }
  return std::nullopt;
}

double WellItems::Value(const Well& well, size_t handle) const {
  if (handle < kItems.size()) {
    const WellItem& item = kItems[handle];
    return FromField(item.value(well), item.quantity, units_);
  }
  const size_t element = handle - kItems.size();
  const ComponentItem& item = kComponentItems[element % kComponentItems.size()];
  return FromField(item.value(well, element / kComponentItems.size()), item.quantity, units_);
}

}  // namespace gantry::simulator
