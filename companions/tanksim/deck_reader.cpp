#include "tanksim/deck_reader.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numeric>
#include <unordered_map>

#include <fmt/format.h>

#include "described_toml/described_table.h"
#include "described_toml/near_word.h"
#include "platform/file_path.h"
#include "platform/text.h"
#include "simulator_side/well_words.h"
#include "tanksim/deck_keys.h"
#include "text/checksum.h"

namespace gantry::simulator {

namespace {

using toml_reader::ColumnKey;
using toml_reader::DescribedTable;
using Order = ColumnKey::Order;

WaterData ReadWater(const DescribedTable& fluid) {
  WaterData water;
  if (!fluid.Has("water")) return water;
  fluid.Try([&] {
    const DescribedTable table = fluid.Table("water");
    table.Read(kWaterKeys, water);
    table.RejectUnknownKeys();
  });
  return water;
}

void ReadOil(const DescribedTable& table, BlackOilData& data) {
  table.ReadColumns("oil", 2,
                    {{"pressure", kPressure, Order::kRising, &data.oilPressure},
                     {"dissolved gas", kGasPerLiquid, Order::kRising, &data.dissolvedGas},
                     {"formation factor", kNone, Order::kNotFalling, &data.oilFactor},
                     {"viscosity", kNone, Order::kNotRising, &data.oilViscosity}});
  if (data.oilFactor.front() <= 0.0 || data.oilViscosity.back() <= 0.0) {
    table.Fail("oil", "the formation factor and the viscosity of 'oil' must be above zero");
  }
}

void ReadGas(const DescribedTable& table, BlackOilData& data) {
  table.ReadColumns("gas", 2,
                    {{"pressure", kPressure, Order::kRising, &data.gasPressure},
                     {"formation factor", kGasVolumeFactor, Order::kFalling, &data.gasFactor},
                     {"viscosity", kNone, Order::kNotFalling, &data.gasViscosity}});
  if (data.gasFactor.back() <= 0.0 || data.gasViscosity.front() <= 0.0) {
    table.Fail("gas", "the formation factor and the viscosity of 'gas' must be above zero");
  }
}

BlackOilData ReadBlackOil(const DescribedTable& table) {
  BlackOilData data;
  table.Read(kBlackOilKeys, data);
  table.Try([&] { ReadOil(table, data); });
  table.Try([&] { ReadGas(table, data); });
  return data;
}

/// A name that the simulator tells the driver, whose code page has to hold it.
std::string ReadToldName(const DescribedTable& table) {
  std::string name = table.Text("name");
  if (platform::CodePageToUtf8(platform::Utf8ToCodePage(name)) != name) {
    table.Fail("name", fmt::format("the driver's code page lacks a character of '{}'", name));
  }
  return name;
}

void ReadInteractions(const DescribedTable& table, EosData& data) {
  const bool isGiven = table.Has(kBinaryInteraction.name);
  const size_t count = data.components.size();
  if (count < 2 || count > 100) {
    table.Fail("component", "a compositional fluid has from 2 to 100 [[fluid.component]]");
  }
  const size_t pairs = count * (count - 1) / 2;
  data.binaryInteraction.resize(pairs);
  if (!isGiven) return;
  data.binaryInteraction = table.Numbers(kBinaryInteraction);
  if (data.binaryInteraction.size() != pairs) {
    table.Fail(
        kBinaryInteraction.name,
        fmt::format("'binary_interaction' needs {} numbers for {} components", pairs, count));
  }
}

EosData ReadEos(const DescribedTable& table) {
  EosData data;
  static constexpr std::string_view kWords[] = {"PENG_ROBINSON", "SOAVE_REDLICH_KWONG"};
  table.Try([&] { data.name = kWords[table.Word("eos", data.name, kWords)]; });
  for (const DescribedTable& component : table.Tables("component")) {
    ComponentData& read = data.components.emplace_back();
    table.Try([&] { read.name = ReadToldName(component); });
    component.Read(kComponentKeys, read);
    component.RejectUnknownKeys();
  }
  table.Try([&] { ReadInteractions(table, data); });
  return data;
}

/// Mole fractions that add up to 1, as near as a deck is written.
std::vector<double> ReadComposition(const DescribedTable& table, const Deck& deck) {
  std::vector<double> fractions = table.Numbers(kComposition);
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

void ReadFluid(const DescribedTable& table, Deck& deck) {
  if (table.Word("model", "black_oil", "black_oil|compositional") == 1) {
    deck.compositional = {ReadEos(table), ReadWater(table)};
  } else {
    deck.blackOil = ReadBlackOil(table);
    deck.blackOil.water = ReadWater(table);
  }
  table.RejectUnknownKeys();
}

void RequireShares(const DescribedTable& table, std::string_view key,
                   std::initializer_list<const std::vector<double>*> columns) {
  for (const std::vector<double>* column : columns) {
    if (std::ranges::max(*column) <= 1.0) continue;
    table.Fail(key, fmt::format("'{}' has a number above 1", key));
  }
}

void ReadWaterOil(const DescribedTable& table, RockFluidData& data) {
  table.ReadColumns("water_oil", 2,
                    {{"water saturation", kNone, Order::kRising, &data.waterSaturation},
                     {"water permeability", kNone, Order::kNotFalling, &data.water},
                     {"oil permeability", kNone, Order::kNotRising, &data.oilInWater}});
  RequireShares(table, "water_oil", {&data.waterSaturation, &data.water, &data.oilInWater});
  if (data.oilInWater.front() <= 0.0) {
    table.Fail("water_oil", "oil doesn't flow at the connate water of 'water_oil'");
  }
}

void ReadGasOil(const DescribedTable& table, RockFluidData& data) {
  table.ReadColumns("gas_oil", 2,
                    {{"gas saturation", kNone, Order::kRising, &data.gasSaturation},
                     {"gas permeability", kNone, Order::kNotFalling, &data.gas},
                     {"oil permeability", kNone, Order::kNotRising, &data.oilInGas}});
  RequireShares(table, "gas_oil", {&data.gasSaturation, &data.gas, &data.oilInGas});
}

RockFluidData ReadRockFluid(const DescribedTable& table) {
  RockFluidData data;
  table.Try([&] { ReadWaterOil(table, data); });
  table.Try([&] { ReadGasOil(table, data); });
  table.RejectUnknownKeys();
  return data;
}

bool ReadFront(const DescribedTable& table) {
  return table.Word("displacement", "mixed", "mixed|front") == 1;
}

void ReadContent(const DescribedTable& table, const Deck& deck, InitialState& initial) {
  if (!deck.compositional) {
    table.Read(kContentKeys, initial);
    return;
  }
  initial.composition = ReadComposition(table, deck);
  if (initial.gasSaturation > 0.0) {
    table.Fail("gas_saturation",
               "the composition tells the gas: 'gas_saturation' is for black oil");
  }
}

void ReadAquifer(const DescribedTable& table, TankData& tank) {
  if (!table.Has("aquifer")) return;
  const DescribedTable aquifer = table.Table("aquifer");
  tank.aquifer.emplace();
  aquifer.Read(kAquiferKeys, *tank.aquifer);
  aquifer.RejectUnknownKeys();
}

TankData ReadTank(const DescribedTable& table, const Deck& deck) {
  TankData tank;
  table.Try([&] { tank.name = table.Text("name"); });
  table.Read(kInitialKeys, tank.initial);
  table.Read(kTankKeys, tank);
  table.Try([&] { ReadContent(table, deck, tank.initial); });
  table.Try([&] {
    if (tank.initial.waterSaturation + tank.initial.gasSaturation > 1.0) {
      table.Fail("gas_saturation", "the saturations of the tank add up to more than 1");
    }
  });
  Key reference = kInitialKeys[0].about;
  reference.name = "rock_reference_pressure";
  reference.isRequired = false;
  reference.standard = tank.initial.pressure;
  table.Try([&] { tank.rockReferencePressure = table.Number(reference); });
  table.Try([&] { tank.initial.gasRedissolves = table.Flag("gas_redissolves", true); });
  table.Try([&] { tank.hasFront = ReadFront(table); });
  table.Try([&] { ReadAquifer(table, tank); });
  table.RejectUnknownKeys();
  return tank;
}

WellType ReadType(const DescribedTable& table) {
  return static_cast<WellType>(table.Word("type", "", "producer|water_injector|gas_injector"));
}

void ReadIndex(const DescribedTable& table, WellData& well) {
  if (well.type == WellType::kProducer) {
    well.indexIsOfGas = table.Has(kGasIndex.name);
    if (well.indexIsOfGas && table.Has(kOilIndex.name)) {
      table.Fail(kGasIndex.name, "a well has one productivity index, of oil or of gas");
    }
    well.index = table.Number(well.indexIsOfGas ? kGasIndex : kOilIndex);
    return;
  }
  const bool injectsGas = well.type == WellType::kGasInjector;
  well.index = table.Number(injectsGas ? kGasInjectivity : kWaterInjectivity);
}

void ReadLimits(const DescribedTable& table, WellData& well) {
  const bool produces = well.type == WellType::kProducer;
  for (const LimitKey& limit : kLimitKeys) {
    if (limit.ofProducers != produces) continue;
    const bool isMandatory = limit.item == LimitItem::kBottomHolePressure;
    if (!isMandatory && !table.Has(limit.about.name)) continue;
    table.Try([&] { well.limits.push_back({limit.item, table.Number(limit.about)}); });
  }
}

using Places = std::unordered_map<std::string, size_t>;

size_t FindTank(const DescribedTable& table, const std::string& well, const Places& tanks) {
  const std::string tank = table.Text("tank");
  const auto found = tanks.find(tank);
  if (found != tanks.end()) return found->second;
  std::vector<std::string_view> names;
  for (const auto& [name, place] : tanks) names.push_back(name);
  table.Fail("tank", fmt::format("well '{}' stands in the unknown tank '{}'{}", well, tank,
                                 toml_reader::DidYouMean(tank, names)));
}

void ReadInjectedGas(const DescribedTable& table, const Deck& deck, WellData& well) {
  if (!deck.compositional || well.type != WellType::kGasInjector) return;
  well.injectedComposition.assign(deck.compositional->eos.components.size(), 0.0);
  if (table.Has(kComposition.name)) {
    well.injectedComposition = ReadComposition(table, deck);
  } else if (!well.injectedComposition.empty()) {
    well.injectedComposition.front() = 1.0;
  }
}

WellData ReadWell(const DescribedTable& table, const Deck& deck, const Places& tanks) {
  WellData well;
  well.line = table.Line();
  table.Try([&] {
    well.name = ReadToldName(table);
    if (well.name.empty() || well.name == "*") table.Fail("name", "a well can't have this name");
  });
  table.Try([&] { well.tank = FindTank(table, well.name, tanks); });
  table.Try(
      [&] { well.status = static_cast<WellStatus>(table.Word("status", "OPEN", kStatusWords)); });
  table.Read(kWellKeys, well);
  if (!table.Try([&] { well.type = ReadType(table); })) return well;
  table.Try([&] { ReadIndex(table, well); });
  ReadLimits(table, well);
  table.Try([&] { ReadInjectedGas(table, deck, well); });
  table.RejectUnknownKeys();
  return well;
}

/// Remembers a name; a second one of the same kind is a fault.
void AddName(const DescribedTable& table, Places& names, const std::string& name,
             std::string_view kind) {
  table.Try([&] {
    if (!name.empty() && !names.try_emplace(name, names.size()).second) {
      table.Fail("name", fmt::format("there are two {}s with the name '{}'", kind, name));
    }
  });
}

void ReadHead(const DescribedTable& root, Deck& deck) {
  root.Try([&] { deck.title = root.Text("title", ""); });
  root.Try([&] {
    const toml_reader::Date start = root.Day("start_date");
    if (!IsValid(start)) root.Fail("start_date", "'start_date' is no date");
    deck.start = MidnightOf(start);
  });
  root.Read(kTopKeys, deck);
  root.Try([&] { deck.reportedVersion = root.Text("reported_version", "2017.2"); });
}

void ReadTanksAndWells(const DescribedTable& root, Deck& deck) {
  Places tanks;
  for (const DescribedTable& table : root.Tables("tank")) {
    deck.tanks.push_back(ReadTank(table, deck));
    AddName(table, tanks, deck.tanks.back().name, "tank");
  }
  Places wells;
  for (const DescribedTable& table : root.Tables("well")) {
    deck.wells.push_back(ReadWell(table, deck, tanks));
    AddName(table, wells, deck.wells.back().name, "well");
  }
  root.Try([&] {
    if (deck.tanks.empty()) root.Fail("tank", "the deck has no [[tank]]");
  });
  root.Try([&] {
    if (deck.wells.empty()) root.Fail("well", "the deck has no [[well]]");
  });
}

/// What all else is understood by comes first: without the units, and without the kind of fluid,
/// what follows can't be judged.
Deck BuildDeck(const DescribedTable& root, const std::string& fileName) {
  Deck deck;
  deck.file = fileName;
  const bool hasUnits = root.Try(
      [&] { deck.units = static_cast<UnitSystem>(root.Word("units", "", "field|metric")); });
  if (!hasUnits) root.ThrowFaults();
  root.UseUnits(deck.units);
  ReadHead(root, deck);
  const bool hasFluid = root.Try([&] { ReadFluid(root.Table("fluid"), deck); });
  root.Try([&] { deck.rockFluid = ReadRockFluid(root.Table("rock_fluid")); });
  if (hasFluid) {
    root.Try([&] { ReadTanksAndWells(root, deck); });
    root.RejectUnknownKeys();
  }
  root.ThrowFaults();
  return deck;
}

}  // namespace

Deck ReadDeck(const std::filesystem::path& file) {
  const std::string name = platform::NameOf(file);
  constexpr const char* kUnread = "the deck can't be read";
  try {
    std::ifstream stream(file, std::ios::binary);
    if (!stream || !std::filesystem::is_regular_file(file)) throw DeckError(name, 1, kUnread);
    return ReadDeckText(std::string(std::istreambuf_iterator<char>(stream), {}), name);
  } catch (const std::system_error& failure) {  // of the stream or of the file system
    throw DeckError(name, 1, kUnread + (": " + failure.code().message()));
  }
}

Deck ReadDeckText(std::string_view text, const std::string& fileName) {
  Deck deck = BuildDeck(DescribedTable::ReadText(text, fileName), fileName);
  deck.checksum = Checksum(text);
  return deck;
}

}  // namespace gantry::simulator
