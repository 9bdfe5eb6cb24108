#include "tanksim/tank_simulator.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "described_toml/calendar.h"
#include "platform/text.h"
#include "simulator_side/well_words.h"
#include "tanksim/moment_text.h"

namespace gantry::simulator {

namespace {

constexpr const char* kStateFormat = "tanksim state 1";
constexpr double kLastDay = 1e7;
constexpr std::string_view kController = "USER";
constexpr std::string_view kDeck = "DECK";

struct EosProperty {
  std::string_view name;
  Quantity quantity;
  double ComponentData::*value;
};
constexpr EosProperty kEosProperties[] = {
    {"Molecular weight", Quantity::kNone, &ComponentData::molecularWeight},
    {"TCrit", Quantity::kSimulatorTemperature, &ComponentData::criticalTemperature},
    {"PCrit", Quantity::kPressure, &ComponentData::criticalPressure},
    {"VCRIT", Quantity::kCriticalVolume, &ComponentData::criticalVolume},
    {"Acentric factor", Quantity::kNone, &ComponentData::acentricFactor},
    {"BP", Quantity::kSimulatorTemperature, &ComponentData::boilingPoint},
    {"VSHIFT", Quantity::kNone, &ComponentData::volumeShift},
    {"Parachor", Quantity::kNone, &ComponentData::parachor},
};

ReservoirFluidRecord DescribeFluid(const EosData& data, UnitSystem units) {
  const EquationOfState eos(data);
  ReservoirFluidRecord record;
  record.name = "FLUID";
  record.eosName = data.name;
  for (const ComponentData& component : data.components) {
    record.componentNames.push_back(platform::Utf8ToCodePage(component.name));
  }
  for (const EosProperty& property : kEosProperties) {
    record.propertyNames.emplace_back(property.name);
    Doubles& values = record.propertyValues.emplace_back();
    for (const ComponentData& component : data.components) {
      values.push_back(FromField(component.*property.value, property.quantity, units));
    }
  }
  const size_t count = data.components.size();
  record.propertyNames.insert(record.propertyNames.end(), {"OMEGAA", "OMEGAB"});
  record.propertyValues.emplace_back(count, eos.OmegaA());
  record.propertyValues.emplace_back(count, eos.OmegaB());
  record.binaryInteraction = data.binaryInteraction;
  return record;
}

ModelDescription Describe(const Deck& deck) {
  ModelDescription description;
  description.version = deck.reportedVersion;
  description.unitSystem = deck.units == UnitSystem::kMetric ? "ECLIPSE_METRIC" : "ECLIPSE_FIELD";
  description.startDate = toml_reader::DateAfter(deck.start, 0.0);
  description.fieldFluidModel = deck.compositional ? "COMPOSITIONAL" : "BLACKOIL";
  description.reservoirFluidModel = description.fieldFluidModel;
  if (deck.compositional) {
    description.fluids.push_back(DescribeFluid(deck.compositional->eos, deck.units));
    description.componentNames = description.fluids.front().componentNames;
  }
  return description;
}

/// The limits under which a well flows as much as its other limits let it.
WellLimit RateLimit(WellType type, double value) {
  static constexpr LimitItem kItems[] = {LimitItem::kReservoirProduction,
                                         LimitItem::kWaterInjection, LimitItem::kGasInjection};
  return {kItems[static_cast<size_t>(type)], value};
}

double RateOf(WellType type, const WellVolumes& rates) {
  if (type == WellType::kWaterInjector) return rates.injectedWater;
  if (type == WellType::kGasInjector) return rates.injectedGas;
  return rates.reservoirProduction;
}

}  // namespace

TankSimulator::TankSimulator(Deck deck)
    : deck_(std::move(deck)),
      run_(deck_),
      items_(deck_.units, deck_.compositional ? deck_.compositional->eos.components.size() : 0),
      description_(Describe(deck_)) {
  for (const WellData& well : deck_.wells) {
    wellNames_.push_back(platform::Utf8ToCodePage(well.name));
  }
}

void TankSimulator::KeepStates(const std::filesystem::path& file) {
  states_.emplace(file, kStateFormat, deck_.checksum);
}

void TankSimulator::GoOnAt(double days) {
  if (!states_) throw ResumeRefused("the host names no folder that could hold a state");
  const nlohmann::json state = states_->Take(days);
  try {
    run_.GoTo(RunMomentOf(state.at("run")));
    wellOfSource_ = state.at("sources").get<std::map<std::string, size_t>>();
  } catch (const std::exception& error) {
    throw ResumeRefused(std::string("the state isn't one of this deck: ") + error.what());
  }
}

RunPosition TankSimulator::Position() const {
  RunPosition position;
  position.days = run_.Days();
  position.date = toml_reader::DateAfter(deck_.start, position.days);
  if (isRunning_) position.stop = run_.IsAtEnd() ? Stop::kEndSimulate : Stop::kBeginNewton;
  return position;
}

std::optional<size_t> TankSimulator::FindWellNumber(std::string_view item) const {
  return items_.Find(item);
}

double TankSimulator::WellNumber(size_t well, size_t item) {
  return items_.Value(run_.Wells()[well], item);
}

InflowTable TankSimulator::MeasureInflow(size_t well, std::string_view pressureType,
                                         int32_t pointCount, double skewness) {
  static const Strings kItems = {words::kOilProductionRate, words::kGasProductionRate,
                                 words::kWaterProductionRate, words::kWaterInjectionRate,
                                 words::kGasInjectionRate};
  if (pointCount < 0 || pointCount > 10000) {
    throw RequestRefused("An inflow table can't have " + std::to_string(pointCount) + " points");
  }
  InflowTable table;
  table.items = kItems;
  table.items.emplace_back(pressureType);
  std::vector<size_t> handles;
  for (const std::string& item : table.items) {
    const auto handle = items_.Find(item);
    if (!handle) throw RequestRefused("Unknown pressure type " + item);
    handles.push_back(*handle);
  }
  table.values.resize(handles.size());
  Well measured = run_.Wells()[well];
  const WellType type = measured.Data().type;
  measured.SetStatus(WellStatus::kOpen);
  measured.SetControllerLimits({});
  const double most = RateOf(type, measured.Flow().rates);
  for (int32_t point = 0; point < pointCount; ++point) {
    const double fraction = std::pow(1.0 - double(point) / double(pointCount), skewness);
    measured.SetControllerLimits({RateLimit(type, most * fraction)});
    for (size_t i = 0; i < handles.size(); ++i) {
      table.values[i].push_back(items_.Value(measured, handles[i]));
    }
  }
  return table;
}

std::vector<WellConstraint> TankSimulator::Constraints(size_t well) const {
  std::vector<WellConstraint> constraints;
  const auto add = [&](std::span<const WellLimit> limits, std::string_view setter) {
    for (const WellLimit& limit : limits) {
      constraints.push_back({std::string(WordOf(limit.item)),
                             FromField(limit.value, QuantityOf(limit.item), deck_.units),
                             std::string(setter)});
    }
  };
  add(run_.Wells()[well].Data().limits, kDeck);
  add(run_.Wells()[well].ControllerLimits(), kController);
  return constraints;
}

void TankSimulator::SetConstraints(size_t well, std::span<const WellConstraint> constraints) {
  std::vector<WellLimit> limits;
  limits.reserve(constraints.size());
  for (const WellConstraint& constraint : constraints) {
    const auto item = FindLimitItem(constraint.item);
    if (!item) throw RequestRefused("Unknown constraint item " + constraint.item);
    RequireNumber(constraint.value, constraint.item, wellNames_[well]);
    limits.push_back({*item, ToField(constraint.value, QuantityOf(*item), deck_.units)});
  }
  run_.Wells()[well].SetControllerLimits(std::move(limits));
}

void TankSimulator::SetStatus(size_t well, std::string_view status, std::string_view) {
  const auto found = FindStatus(status);
  if (!found) throw RequestRefused("Unknown well status " + std::string(status));
  run_.Wells()[well].SetStatus(*found);
}

void TankSimulator::SetUptime(size_t well, double fraction) {
  RequireNumber(fraction, "UPTIME_FRACTION", wellNames_[well]);
  run_.Wells()[well].SetUptime(std::clamp(fraction, 0.0, 1.0));
}

bool TankSimulator::CreateFluidSource(size_t well, const std::string& source, const std::string&) {
  if (run_.Wells()[well].Data().type != WellType::kGasInjector) return false;
  if (description_.componentNames.empty()) return false;
  wellOfSource_[source] = well;
  return true;
}

void TankSimulator::SetFluidSource(const std::string& source, std::span<const std::string> items,
                                   std::span<const double> values, const std::string&) {
  if (items.empty()) return;
  const auto found = wellOfSource_.find(source);
  if (found == wellOfSource_.end()) throw RequestRefused("Unknown fluid source " + source);
  std::vector<double> fractions(description_.componentNames.size());
  for (size_t i = 0; i < items.size(); ++i) {
    size_t component = 0;
    while (component < fractions.size() &&
           items[i] != "TOTAL_MOLE_FRACTION[" + std::to_string(component + 1) + "]") {
      ++component;
    }
    if (component == fractions.size()) throw RequestRefused("Unknown source item " + items[i]);
    if (!(values[i] >= 0.0)) throw RequestRefused("Mole fraction of " + source + " below zero");
    fractions[component] = values[i];
  }
  const double sum = std::accumulate(fractions.begin(), fractions.end(), 0.0);
  if (!(sum > 0.0) || !std::isfinite(sum)) {
    throw RequestRefused("The mole fractions of " + source + " don't add up");
  }
  for (double& fraction : fractions) fraction /= sum;
  run_.Wells()[found->second].SetInjectedComposition(std::move(fractions));
}

void TankSimulator::ContinueUntil(double days) {
  if (!(days <= kLastDay)) throw RequestRefused("The time to run to is beyond all times");
  isRunning_ = true;
  run_.AdvanceTo(days);
  if (states_)
    states_->Keep(run_.Days(), {{"run", ToJson(run_.Moment())}, {"sources", wellOfSource_}});
}

}  // namespace gantry::simulator
