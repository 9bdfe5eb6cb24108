#include "flowlink/deck_composer.h"

#include <map>

#include <gtest/gtest.h>

#include "flowlink/deck_keywords.h"
#include "support/test_folder.h"

namespace gantry::flowlink {
namespace {

class DeckComposer : public ::testing::Test {
 protected:
  ComposedDeck Compose(const std::string& schedule, const std::string& runspec = "",
                       const RunBegin& begin = {}) {
    folder.Write("A.DATA",
                 "RUNSPEC\nSTART\n 15 'JAN' 2020 /\n" + runspec + "SCHEDULE\n" + schedule);
    LinkSettings settings;
    settings.deck = folder / "A.DATA";
    settings.grid = grid;
    return ComposeDeck(settings, "link.py", {"WOPR"}, begin);
  }
  /// The lengths of the report steps after the adapter's own first one.
  std::vector<double> StepsOf(const ComposedDeck& deck) {
    std::vector<double> steps;
    DeckTime last = deck.start;
    for (const DeckKeyword& keyword :
         ReadDeckKeywords(folder.Write("COMPOSED.DATA", deck.text.Text()))) {
      if (keyword.name != "DATES") continue;
      const DeckTime time = ReadDeckDate(RecordsOf(keyword).front());
      if (time - deck.start == std::chrono::seconds(43)) continue;
      steps.push_back(std::chrono::duration<double>(time - last).count() / 86400.0);
      last = time;
    }
    return steps;
  }

  gantry::test::TestFolder folder;
  ReportGrid grid;
};

TEST_F(DeckComposer, StopsAtTheGridAndAtTheDecksOwnTimes) {
  const std::string schedule = "DATES\n 1 FEB 2020 /\n 10 'MAR' 2020 12:00:00 /\n/\nTSTEP\n2*3 /\n";
  const struct {
    ReportGrid grid;
    std::vector<double> steps;
  } cases[] = {{{}, {17, 29, 9.5, 3, 3}},
               {{ReportGrid::Kind::kDays, 30.0}, {17, 13, 25.5, 3, 3}},
               {{ReportGrid::Kind::kDeck, 0.0}, {17, 38.5, 3, 3}},
               {{ReportGrid::Kind::kDeck, 0.0, {{2020, 2, 1}, {2020, 1, 25}, {2021, 1, 1}}},
                {10, 7, 38.5, 3, 3}}};
  for (const auto& [ofGrid, steps] : cases) {
    grid = ofGrid;
    EXPECT_EQ(StepsOf(Compose(schedule)), steps);
  }
}

/// A deck that counts 28 days for each February falls behind the calendar by a day in 2020.
TEST_F(DeckComposer, TakesCloseTimesForOneTheDecks) {
  EXPECT_EQ(StepsOf(Compose("TSTEP\n 17 28 31 30 31 1.5D0 /\n")),
            (std::vector<double>{17, 28, 31, 30, 31, 1.5}));
  const std::vector<double> stops = {0.0005, 17, 45, 76};
  for (const auto& [days, stop] : std::map<double, size_t>{
           {0.0005, 0}, {1, 0}, {5, 1}, {17.5, 1}, {20.1, 2}, {46, 2}, {75, 3}, {99, 3}}) {
    EXPECT_EQ(StopFor({}, stops, days), stop) << days;
  }
}

TEST_F(DeckComposer, KeepsWhatTheDeckOrdersAtItsTimeAndWhereItStands) {
  const ComposedDeck deck =
      Compose("TSTEP\n 1 / -- a day\n\ntuning\n 1 /\n/\n/\nwefac\n 'P' 0.5 /\n/\nTstep\n 1 /\n");
  const std::string& text = deck.text.Text();
  const size_t order = text.find("wefac\n'P' 0.5 /\n/\n");
  ASSERT_NE(order, std::string::npos);
  EXPECT_EQ(text.substr(order + 18), "DATES\n17 'JAN' 2020 00:00:00 /\n/\nEND\n");
  EXPECT_LT(text.find("PYACTION\nFLOWLINK UNLIMITED /\n'link.py' /\n"), order);
  EXPECT_NE(text.find("SUMMARY\nWOPR\n/\nSCHEDULE\n"), std::string::npos);
  EXPECT_EQ(text.find("tuning"), std::string::npos) << "flow alone wouldn't heed it";
  const auto line = static_cast<size_t>(std::count(&text[0], &text[order], '\n')) + 2;
  EXPECT_EQ(deck.text.PlaceOf(line)->Text(), (folder / "A.DATA").string() + ":13");
  EXPECT_FALSE(deck.text.PlaceOf(line + 3)) << "a line of the adapter's own";
}

TEST_F(DeckComposer, BeginsARunUnderTheHostsKeywordsBehindWhatARestartSkips) {
  RunBegin begin{RestartPoint{"A_2", 2, 1.0}, {}};
  const auto composed = [&] {
    const ComposedDeck deck =
        Compose("TSTEP\n 1 /\nWECON\n/\nTSTEP\n 1 /\n", "SOLUTION\nEQUIL\n 1 /\n", begin);
    const std::string& text = deck.text.Text();
    EXPECT_NE(text.find("SOLUTION\nRESTART\n'A_2' 2 /\nEQUIL\n"), std::string::npos) << text;
    return text.substr(text.find("SKIPREST\n"));
  };
  const std::string head =
      "SKIPREST\nRPTRST\nBASIC=2 /\nDATES\n16 'JAN' 2020 00:00:00 /\n/\nWECON\n/\n"
      "TUNING\n 1 365 1* 1* 3 1E-7 0.33 2 1* 1* /\n/\n/\n"
      "PYACTION\nFLOWLINK UNLIMITED /\n'link.py' /\n";
  const std::string tail = "DATES\n17 'JAN' 2020 00:00:00 /\n/\nEND\n";
  EXPECT_EQ(composed(), head + "DATES\n16 'JAN' 2020 00:00:43 /\n/\n" + tail);
  begin.orders = "UDQ\n/\n";
  EXPECT_EQ(composed(), head + "UDQ\n/\n" + tail);
}

TEST_F(DeckComposer, ReadsIncludedFilesFromTheDecksFolder) {
  folder.Write("sub/wells.inc", "INCLUDE\n '$HERE\\on--ward.inc' / it goes on there\n");
  folder.Write("sub/on--ward.inc", "WCONINJE\r\n I* GAS /\r\n/ -- END\r\nENDINC\nEND\n");
  const ComposedDeck deck =
      Compose("INCLUDE\n sub/wells.inc /\nTSTEP / days\n 1 /\nEND\nTSTEP\n 9 /\n",
              "PATHS\n 'HERE' 'sub' /\n/\n");
  ASSERT_EQ(deck.wellOrders.size(), 1U);
  EXPECT_TRUE(deck.wellOrders[0].Means("I1"));
  EXPECT_EQ(deck.wellOrders[0].place.Text(), (folder / "sub/on--ward.inc").string() + ":1");
  EXPECT_EQ(StepsOf(deck), std::vector<double>{1});
}

TEST_F(DeckComposer, TakesUnitsFluidsAndDensities) {
  const ComposedDeck deck =
      Compose("WELOPEN\nFIELD\nSHUT /\n/\nTSTEP\n 1 /\n",
              "TITLE\nLAB\nand more\noil\nGAS\nPROPS\nDENSITY\n 53.66 6.449D1 .0533 /\n");
  EXPECT_EQ(deck.units, "METRIC") << "neither a title nor a well's name is a keyword";
  EXPECT_TRUE(deck.fluids.hasOil && deck.fluids.hasGas && !deck.fluids.hasWater);
  EXPECT_DOUBLE_EQ(deck.waterDensity, 64.49);
}

}  // namespace
}  // namespace gantry::flowlink
