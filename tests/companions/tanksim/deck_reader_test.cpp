#include "tanksim/deck_reader.h"

#include <sstream>

#include <gtest/gtest.h>

#include "sample_deck.h"

namespace gantry::simulator::test {
namespace {

TEST(Deck, GivesAKeyThatIsLeftOutItsUsualMeaning) {
  EXPECT_TRUE(SampleDeck().tanks[0].initial.gasRedissolves);
  std::string text = gantry::test::TestFolder::Read(GANTRY_EXAMPLES "/gas_cycling/GAS_CYCLING.afi");
  text += "[[well]]\nname = 'NEW'\ntank = '" + ReadDeckText(text, "").tanks[0].name +
          "'\ntype = 'gas_injector'\ninjectivity_index = 1.0\n"
          "maximum_bottom_hole_pressure = 9000.0\n";
  EXPECT_EQ(ReadDeckText(text, "").wells.back().injectedComposition,
            (std::vector<double>{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}));
}

/// The first word of each indented line of the reference is a key.
TEST(Deck, OfTheDocumentationRunsAndThatNamesEveryNumber) {
  const std::string page = gantry::test::TestFolder::Read(GANTRY_DOCS "/tanksim.md");
  const size_t begin = page.find("```toml\n") + 8;
  EXPECT_NO_THROW(ReadDeckText(page.substr(begin, page.find("```", begin) - begin), "DOCS.afi"));
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
