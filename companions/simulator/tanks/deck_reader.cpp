#include "simulator/tanks/deck_reader.h"

#include <cmath>
#include <numeric>
#include <unordered_map>

#include <fmt/format.h>

#include "platform/text.h"
#include "simulator/tanks/calendar.h"
#include "simulator/tanks/deck_keys.h"

namespace gantry::simulator {

namespace {

using Order = ColumnKey::Order;

template <class Data, size_t N>
void ReadNumbers(const DeckTable& table, const std::array<FieldKey<Data>, N>& keys,
                 const DeckUnits& units, Data& data) {
  for (const FieldKey<Data>& key : keys) data.*key.field = table.Number(key.key, units);
}

DeckUnits ReadUnits(const DeckTable& table) {
  const std::string units = table.Text("units");
  if (units != "field" && units != "metric") {
    table.Fail("units", "'units' must be \"field\" or \"metric\"");
  }
  return DeckUnits(units == "metric");
}

WaterData ReadWater(const DeckTable& fluid, const DeckUnits& units) {
  WaterData water;
  if (!fluid.Has("water")) return water;
  const DeckTable table = fluid.Table("water");
  ReadNumbers(table, kWaterKeys, units, water);
  table.RejectUnknownKeys();
  return water;
}

BlackOilData ReadBlackOil(const DeckTable& table, const DeckUnits& units) {
  BlackOilData data;
  ReadNumbers(table, kBlackOilKeys, units, data);
  auto oil = table.Columns("oil", 2,
                           {{"pressure", Quantity::kPressure, Order::kRising},
                            {"dissolved gas", Quantity::kGasPerLiquid, Order::kRising},
                            {"formation factor", Quantity::kNumber, Order::kNotFalling},
                            {"viscosity", Quantity::kNumber, Order::kNotRising}},
                           units);
  auto gas = table.Columns("gas", 2,
                           {{"pressure", Quantity::kPressure, Order::kRising},
                            {"formation factor", Quantity::kGasVolumeFactor, Order::kFalling},
                            {"viscosity", Quantity::kNumber, Order::kNotFalling}},
                           units);
  data.oilPressure = std::move(oil[0]);
  data.dissolvedGas = std::move(oil[1]);
  data.oilFactor = std::move(oil[2]);
  data.oilViscosity = std::move(oil[3]);
  data.gasPressure = std::move(gas[0]);
  data.gasFactor = std::move(gas[1]);
  data.gasViscosity = std::move(gas[2]);
  if (data.oilFactor.front() <= 0.0 || data.oilViscosity.back() <= 0.0) {
    table.Fail("oil", "the formation factor and the viscosity of 'oil' must be above zero");
  }
  if (data.gasFactor.back() <= 0.0 || data.gasViscosity.front() <= 0.0) {
    table.Fail("gas", "the formation factor and the viscosity of 'gas' must be above zero");
  }
  return data;
}

/// A name that the simulator tells the driver, whose code page has to hold it.
std::string ReadToldName(const DeckTable& table) {
  std::string name = table.Text("name");
  if (platform::CodePageToUtf8(platform::Utf8ToCodePage(name)) != name) {
    table.Fail("name", fmt::format("the driver's code page lacks a character of '{}'", name));
  }
  return name;
}

EosData ReadEos(const DeckTable& table, const DeckUnits& units) {
  EosData data;
  data.name = table.Text("eos", data.name);
  if (data.name != "PENG_ROBINSON" && data.name != "SOAVE_REDLICH_KWONG") {
    table.Fail("eos", "'eos' must be \"PENG_ROBINSON\" or \"SOAVE_REDLICH_KWONG\"");
  }
  for (const DeckTable& component : table.Tables("component")) {
    ComponentData& read = data.components.emplace_back();
    read.name = ReadToldName(component);
    ReadNumbers(component, kComponentKeys, units, read);
    component.RejectUnknownKeys();
  }
  const size_t count = data.components.size();
  if (count < 2 || count > 100) {
    table.Fail("component", "a compositional fluid has from 2 to 100 [[fluid.component]]");
  }
  const size_t pairs = count * (count - 1) / 2;
  data.binaryInteraction.resize(pairs);
  if (!table.Has(kBinaryInteraction.name)) return data;
  data.binaryInteraction = table.Numbers(kBinaryInteraction, units);
  if (data.binaryInteraction.size() != pairs) {
    table.Fail(
        kBinaryInteraction.name,
        fmt::format("'binary_interaction' needs {} numbers for {} components", pairs, count));
  }
  return data;
}

/// Mole fractions that add up to 1, as near as a deck is written.
std::vector<double> ReadComposition(const DeckTable& table, const Deck& deck) {
  std::vector<double> fractions = table.Numbers(kComposition, deck.units);
  const size_t count = deck.compositional->eos.components.size();
  if (fractions.size() != count) {
    table.Fail(kComposition.name, fmt::format("'composition' needs {} fractions", count));
  }
  const double sum = std::accumulate(fractions.begin(), fractions.end(), 0.0);
  if (std::abs(sum - 1.0) > 1e-3) {
    table.Fail(kComposition.name, fmt::format("'composition' adds up to {:g}, not to 1", sum));
  }
  for (double& fraction : fractions) fraction /= sum;
  return fractions;
}

void ReadFluid(const DeckTable& table, Deck& deck) {
  const std::string model = table.Text("model", "black_oil");
  if (model == "compositional") {
    deck.compositional = {ReadEos(table, deck.units), ReadWater(table, deck.units)};
  } else if (model == "black_oil") {
    deck.blackOil = ReadBlackOil(table, deck.units);
    deck.blackOil.water = ReadWater(table, deck.units);
  } else {
    table.Fail("model", "'model' must be \"black_oil\" or \"compositional\"");
  }
  table.RejectUnknownKeys();
}

void RequireSaturations(const DeckTable& table, std::string_view key,
                        const std::vector<std::vector<double>>& columns) {
  for (const std::vector<double>& column : columns) {
    for (const double value : column) {
      if (value > 1.0) table.Fail(key, fmt::format("'{}' has a number above 1", key));
    }
  }
}

RockFluidData ReadRockFluid(const DeckTable& table) {
  const DeckUnits none;
  auto water = table.Columns("water_oil", 2,
                             {{"water saturation", Quantity::kNumber, Order::kRising},
                              {"water permeability", Quantity::kNumber, Order::kNotFalling},
                              {"oil permeability", Quantity::kNumber, Order::kNotRising}},
                             none);
  auto gas = table.Columns("gas_oil", 2,
                           {{"gas saturation", Quantity::kNumber, Order::kRising},
                            {"gas permeability", Quantity::kNumber, Order::kNotFalling},
                            {"oil permeability", Quantity::kNumber, Order::kNotRising}},
                           none);
  RequireSaturations(table, "water_oil", water);
  RequireSaturations(table, "gas_oil", gas);
  if (water[2].front() <= 0.0) {
    table.Fail("water_oil", "oil doesn't flow at the connate water of 'water_oil'");
  }
  return {std::move(water[0]), std::move(water[1]), std::move(water[2]),
          std::move(gas[0]),   std::move(gas[1]),   std::move(gas[2])};
}

bool ReadFront(const DeckTable& table) {
  const std::string word = table.Text("displacement", "mixed");
  if (word != "mixed" && word != "front") {
    table.Fail("displacement", "'displacement' must be \"mixed\" or \"front\"");
  }
  return word == "front";
}

TankData ReadTank(const DeckTable& table, const Deck& deck) {
  const DeckUnits& units = deck.units;
  TankData tank;
  tank.name = table.Text("name");
  ReadNumbers(table, kInitialKeys, units, tank.initial);
  ReadNumbers(table, kTankKeys, units, tank);
  if (deck.compositional) {
    if (tank.initial.gasSaturation > 0.0) {
      table.Fail("gas_saturation",
                 "the composition tells the gas: 'gas_saturation' is for black oil");
    }
    tank.initial.composition = ReadComposition(table, deck);
  }
  if (!deck.compositional && table.Has(kDissolvedGas.name)) {
    tank.initial.dissolvedGas = table.Number(kDissolvedGas, units);
  }
  if (tank.initial.waterSaturation + tank.initial.gasSaturation > 1.0) {
    table.Fail("gas_saturation", "the saturations of the tank add up to more than 1");
  }
  NumberKey reference = kInitialKeys[0].key;
  reference.name = "rock_reference_pressure";
  reference.fallback = tank.initial.pressure;
  tank.rockReferencePressure = table.Number(reference, units);
  tank.initial.gasRedissolves = table.Flag("gas_redissolves", true);
  tank.hasFront = ReadFront(table);
  if (table.Has("aquifer")) {
    const DeckTable aquifer = table.Table("aquifer");
    tank.aquifer.emplace();
    ReadNumbers(aquifer, kAquiferKeys, units, *tank.aquifer);
    aquifer.RejectUnknownKeys();
  }
  table.RejectUnknownKeys();
  return tank;
}

WellType ReadType(const DeckTable& table) {
  static constexpr std::string_view kWords[] = {"producer", "water_injector", "gas_injector"};
  const std::string word = table.Text("type");
  for (size_t i = 0; i < std::size(kWords); ++i) {
    if (kWords[i] == word) return static_cast<WellType>(i);
  }
  table.Fail("type", "'type' must be \"producer\", \"water_injector\" or \"gas_injector\"");
}

void ReadIndex(const DeckTable& table, const DeckUnits& units, WellData& well) {
  if (well.type == WellType::kProducer) {
    well.indexIsOfGas = table.Has(kGasIndex.name);
    if (well.indexIsOfGas && table.Has(kOilIndex.name)) {
      table.Fail(kGasIndex.name, "a well has one productivity index, of oil or of gas");
    }
    well.index = table.Number(well.indexIsOfGas ? kGasIndex : kOilIndex, units);
    return;
  }
  const bool injectsGas = well.type == WellType::kGasInjector;
  well.index = table.Number(injectsGas ? kGasInjectivity : kWaterInjectivity, units);
}

void ReadLimits(const DeckTable& table, const DeckUnits& units, WellData& well) {
  const bool produces = well.type == WellType::kProducer;
  for (const LimitKey& limit : kLimitKeys) {
    if (limit.ofProducers != produces) continue;
    const bool isMandatory = limit.item == LimitItem::kBottomHolePressure;
    if (!isMandatory && !table.Has(limit.key.name)) continue;
    well.limits.push_back({limit.item, table.Number(limit.key, units)});
  }
}

WellData ReadWell(const DeckTable& table, const Deck& deck,
                  const std::unordered_map<std::string, size_t>& tanks) {
  WellData well;
  well.place = table.Place();
  well.name = ReadToldName(table);
  if (well.name.empty() || well.name == "*") table.Fail("name", "a well can't have this name");
  const std::string tank = table.Text("tank");
  const auto found = tanks.find(tank);
  if (found == tanks.end()) {
    table.Fail("tank", fmt::format("well '{}' stands in the unknown tank '{}'", well.name, tank));
  }
  well.tank = found->second;
  well.type = ReadType(table);
  const std::string status = table.Text("status", "OPEN");
  const auto known = FindStatus(status);
  if (!known) table.Fail("status", fmt::format("'{}' is no status of a well", status));
  well.status = *known;
  ReadNumbers(table, kWellKeys, deck.units, well);
  ReadIndex(table, deck.units, well);
  ReadLimits(table, deck.units, well);
  if (deck.compositional && well.type == WellType::kGasInjector) {
    well.injectedComposition.assign(deck.compositional->eos.components.size(), 0.0);
    well.injectedComposition.front() = 1.0;
    if (table.Has(kComposition.name)) well.injectedComposition = ReadComposition(table, deck);
  }
  table.RejectUnknownKeys();
  return well;
}

/// Remembers a name; a second one of the same kind is a fault.
void AddName(const DeckTable& table, std::unordered_map<std::string, size_t>& names,
             const std::string& name, std::string_view kind) {
  if (!names.try_emplace(name, names.size()).second) {
    table.Fail("name", fmt::format("there are two {}s with the name '{}'", kind, name));
  }
}

void ReadHead(const DeckTable& root, Deck& deck) {
  deck.title = root.Text("title", "");
  deck.units = ReadUnits(root);
  deck.startDate = root.Date("start_date");
  if (!IsDate(deck.startDate)) root.Fail("start_date", "'start_date' is no date");
  if (root.Has(kEndTime.name)) deck.endTime = root.Number(kEndTime, deck.units);
  deck.reportedVersion = root.Text("reported_version", "2017.2");
}

Deck BuildDeck(const DeckTable& root) {
  Deck deck;
  ReadHead(root, deck);
  ReadFluid(root.Table("fluid"), deck);
  const DeckTable rockFluid = root.Table("rock_fluid");
  deck.rockFluid = ReadRockFluid(rockFluid);
  rockFluid.RejectUnknownKeys();
  std::unordered_map<std::string, size_t> tanks;
  for (const DeckTable& table : root.Tables("tank")) {
    deck.tanks.push_back(ReadTank(table, deck));
    AddName(table, tanks, deck.tanks.back().name, "tank");
  }
  std::unordered_map<std::string, size_t> wells;
  for (const DeckTable& table : root.Tables("well")) {
    deck.wells.push_back(ReadWell(table, deck, tanks));
    AddName(table, wells, deck.wells.back().name, "well");
  }
  root.RejectUnknownKeys();
  if (deck.tanks.empty()) root.Fail("tank", "the deck has no [[tank]]");
  if (deck.wells.empty()) root.Fail("well", "the deck has no [[well]]");
  return deck;
}

}  // namespace

Deck ReadDeck(const std::filesystem::path& file) { return BuildDeck(DeckTable::ReadFile(file)); }

Deck ReadDeckText(std::string_view text, const std::string& fileName) {
  return BuildDeck(DeckTable::ReadText(text, fileName));
}

}  // namespace gantry::simulator
