#include "simulator/tanks/deck_reader.h"

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

struct BadDeck {
  const char* name;
  std::string before;  ///< in the sample's text
  std::string after;
  std::string reason;
};

class DeckFault : public testing::TestWithParam<BadDeck> {};

TEST_P(DeckFault, IsToldWithItsLine) {
  std::string text = SampleDeckText();
  const size_t place = text.find(GetParam().before);
  ASSERT_NE(place, std::string::npos);
  const auto line =
      1 + std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(place), '\n');
  text.replace(place, GetParam().before.size(), GetParam().after);
  EXPECT_EQ(FaultOf(text), fmt::format("BAD.afi:{}: {}", line, GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    Decks, DeckFault,
    testing::Values(
        BadDeck{"NoToml", "units = \"field\"", "units = = 1",
                "Error while parsing value: could not determine value type"},
        BadDeck{"HeaderThatIsNoKey", "[rock_fluid]", "[*rock_fluid]", "this is no TOML"},
        BadDeck{"BlankBeyondAscii", "end_time =", "end_time\xE2\x80\xAF=",
                "only texts and comments may go beyond ASCII"},
        BadDeck{"UnknownUnits", "\"field\"", "\"imperial\"",
                "'units' must be \"field\" or \"metric\""},
        BadDeck{"WrongKind", "end_time = 400.0", "end_time = \"soon\"",
                "'end_time' must be a number"},
        BadDeck{"NotFinite", "end_time = 400.0", "end_time = nan",
                "'end_time' must be a finite number"},
        BadDeck{"NoDate", "start_date = 2020-01-31", "start_date = \"2020-01-31\"",
                "'start_date' must be a date such as 2015-01-31"},
        BadDeck{"UnknownKey", "end_time = 400.0", "end_tme = 400.0", "unknown key 'end_tme'"},
        BadDeck{"MissingKey", "[[tank]]\nname = \"T\"\n", "[[tank]]\nnam = \"T\"\n",
                "'name' is missing"},
        BadDeck{"OutOfRange", "water_saturation = 0.3", "water_saturation = 1.3",
                "'water_saturation' is 1.3: it must lie from 0 to 0.99"},
        BadDeck{"FallingTable", "[1000.0, 0.2, 1.15, 1.4]", "[50.0, 0.2, 1.15, 1.4]",
                "the pressure of 'oil' must rise from row to row"},
        BadDeck{"ShortRow", "[1000.0, 0.2, 1.15, 1.4]", "[1000.0, 0.2, 1.15]",
                "a row of 'oil' must have 4 numbers"},
        BadDeck{"UnknownTank", "tank = \"T\"\ntype = \"producer\"",
                "tank = \"U\"\ntype = \"producer\"", "well 'P' stands in the unknown tank 'U'"},
        BadDeck{"SecondName", "name = \"W\"", "name = \"P\"",
                "there are two wells with the name 'P'"},
        BadDeck{"NameBeyondTheCodePage", "name = \"W\"", "name = \"\u0416\"",
                "the driver's code page lacks a character of '\u0416'"},
        BadDeck{"UnknownType", "type = \"gas_injector\"", "type = \"injector\"",
                "'type' must be \"producer\", \"water_injector\" or \"gas_injector\""},
        BadDeck{"LimitOfAnotherKind", "depth = 7000.0", "maximum_bottom_hole_pressure = 9000.0",
                "unknown key 'maximum_bottom_hole_pressure'"}),
    [](const auto& test) { return test.param.name; });

TEST(Deck, SaysWhichFileItCouldNotRead) {
  EXPECT_THROW(ReadDeck("no/such/DECK.afi"), DeckError);
  EXPECT_EQ(FaultOf(""), "BAD.afi:1: 'units' is missing");
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

TEST(Deck, OfTheDocumentationRuns) {
  std::ifstream file(GANTRY_DOCS "/tanksim.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  const size_t begin = page.find("```toml\n") + 8;
  const std::string text = page.substr(begin, page.find("```", begin) - begin);
  EXPECT_EQ(FaultOf(text), "");
}

/// The first word of each indented line of the reference is a key.
TEST(Deck, HasAllItsNumbersInItsDocumentation) {
  std::ifstream file(GANTRY_DOCS "/tanksim.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  std::istringstream reference(DeckReference());
  std::string line;
  std::getline(reference, line);
  int keys = 0;
  while (std::getline(reference, line)) {
    if (line.substr(0, 2) != "  ") continue;
    const std::string key = line.substr(2, line.find(' ', 2) - 2);
    EXPECT_NE(page.find("`" + key + "`"), std::string::npos) << key;
    ++keys;
  }
  EXPECT_GT(keys, 40);
}

}  // namespace
}  // namespace gantry::simulator::test
