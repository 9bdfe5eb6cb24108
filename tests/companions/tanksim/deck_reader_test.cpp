#include "tanksim/deck_reader.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "sample_deck.h"

namespace gantry::simulator::test {
namespace {

std::string FaultOf(const std::string& text) {
  try {
    ReadDeckText(text, "BAD.afi");
  } catch (const DeckError& error) {
    return error.what();
  }
  return {};
}

/// The sample's text with parts put in the place of others.
std::string Changed(const std::vector<std::pair<std::string, std::string>>& changes) {
  std::string text = SampleDeckText();
  for (const auto& [from, to] : changes) {
    const size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    if (place != std::string::npos) text.replace(place, from.size(), to);
  }
  return text;
}

TEST(Deck, TellsAllItsFaultsAtOnceByLines) {
  EXPECT_EQ(FaultOf(Changed({
                {"start_date = 2020-01-31", "start_date = \"2020-01-31\""},
                {"end_time", "end_tme"},
                {"oil_density = 52.0", "oil_density = nan"},
                {"[1000.0, 0.2, 1.15, 1.4]", "[1000.0, 0.2, 1.15]"},
                {"[1000.0, 2.9, 0.014]", "[50.0, 2.9, 0.014]"},
                {"gas_oil = [[0.0,", "gas_oil = [[-0.1,"},
                {"pressure = 3200.0", "presure = 3200.0"},
                {"water_saturation = 0.3", "water_saturation = 1.3\ndisplacement = \"fronts\""},
                {"tank = \"T\"\ntype = \"producer\"", "tank = \"t\"\ntype = \"producer\""},
                {"depth = 7000.0", "maximum_bottom_hole_pressure = 9000.0"},
                {"name = \"W\"", "name = \"P\"\nstatus = \"SHUT\""},
                {"name = \"G\"", "name = \"\u0416\""},
                {"type = \"gas_injector\"", "type = \"injector\""},
            })),
            R"(BAD.afi:2: 'start_date' must be a date such as 2015-01-31
BAD.afi:3: unknown key 'end_tme'; did you mean "end_time"?
BAD.afi:5: 'oil_density' must be a finite number
BAD.afi:8: a row of 'oil' must have 4 numbers
BAD.afi:9: the pressure of 'gas' must rise from row to row
BAD.afi:15: the gas saturation of 'gas_oil' is below zero
BAD.afi:16: 'pressure' is missing
BAD.afi:18: unknown key 'presure'; did you mean "pressure"?
BAD.afi:21: 'water_saturation' is 1.3: it must lie from 0 to 0.99
BAD.afi:22: 'displacement' must be "mixed" or "front"; did you mean "front"?
BAD.afi:28: well 'P' stands in the unknown tank 't'; did you mean "T"?
BAD.afi:32: unknown key 'maximum_bottom_hole_pressure'; did you mean "minimum_bottom_hole_pressure"?
BAD.afi:35: there are two wells with the name 'P'
BAD.afi:36: 'status' must be "OPEN", "SURFACE_SHUTIN", "ALL_COMPLETIONS_SHUTIN", "SURFACE_ABANDONED" or "ALL_COMPLETIONS_ABANDONED"
BAD.afi:42: the driver's code page lacks a character of 'Ж'
BAD.afi:44: 'type' must be "producer", "water_injector" or "gas_injector")");
}

TEST(Deck, ThatCantBeReadFurtherTellsOneFault) {
  EXPECT_EQ(FaultOf(Changed({{"units = \"field\"", "units = \"imperial\""}})),
            "BAD.afi:1: 'units' must be \"field\" or \"metric\"");
  EXPECT_EQ(FaultOf(Changed({{"[rock_fluid]", "[*rock_fluid]"}})), "BAD.afi:13: this is no TOML");
  EXPECT_EQ(FaultOf(""), "BAD.afi:1: 'units' is missing");
  EXPECT_THROW(ReadDeck("no/such/DECK.afi"), DeckError);
}

TEST(Deck, ReadsTheSameReservoirInBothUnitSystems) {
  const Deck field = SampleDeck(false);
  const Deck metric = SampleDeck(true);
  const auto near = [](double a, double b) { return std::abs(a - b) <= 1e-9 * std::abs(a); };
  EXPECT_PRED2(near, field.tanks[0].initial.pressure, metric.tanks[0].initial.pressure);
  EXPECT_PRED2(near, field.tanks[0].initial.poreVolume, metric.tanks[0].initial.poreVolume);
  EXPECT_PRED2(near, field.tanks[0].initial.temperature, metric.tanks[0].initial.temperature);
  EXPECT_PRED2(near, field.blackOil.dissolvedGas[2], metric.blackOil.dissolvedGas[2]);
  EXPECT_PRED2(near, field.blackOil.gasFactor[2], metric.blackOil.gasFactor[2]);
  EXPECT_PRED2(near, field.wells[2].index, metric.wells[2].index);
}

TEST(Deck, OfACompositionalFluidNeedsAWholeComposition) {
  std::ifstream file(std::string(GANTRY_EXAMPLES) + "/gas_cycling/GAS_CYCLING.afi");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::string good = "composition = [0.02, 0.72, 0.10, 0.08, 0.05, 0.03]";
  const auto with = [&](const std::string& composition) {
    std::string changed = text;
    changed.replace(changed.find(good), good.size(), composition);
    return FaultOf(changed);
  };
  EXPECT_EQ(with(good), "");
  EXPECT_NE(with("composition = [0.5, 0.5]").find("'composition' needs 6 fractions"),
            std::string::npos);
  EXPECT_NE(with("composition = [0.1, 0.1, 0.1, 0.1, 0.1, 0.1]").find("adds up to 0.6, not to 1"),
            std::string::npos);
}

/// The first word of each indented line of the reference is a key.
TEST(Deck, OfTheDocumentationRunsAndThatNamesEveryNumber) {
  std::ifstream file(GANTRY_DOCS "/tanksim.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  const size_t begin = page.find("```toml\n") + 8;
  EXPECT_EQ(FaultOf(page.substr(begin, page.find("```", begin) - begin)), "");
  std::istringstream reference(DeckReference());
  std::string heading;
  std::getline(reference, heading);
  int keys = 0;
  for (std::string line; std::getline(reference, line);) {
    if (line.substr(0, 2) != "  ") continue;
    const std::string key = line.substr(2, line.find(' ', 2) - 2);
    EXPECT_NE(page.find("`" + key + "`"), std::string::npos) << key;
    ++keys;
  }
  EXPECT_GT(keys, 40);
}

}  // namespace
}  // namespace gantry::simulator::test
