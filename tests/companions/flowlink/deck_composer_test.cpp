#include "flowlink/deck_composer.h"

#include <gtest/gtest.h>

#include "flowlink/deck_keywords.h"
#include "flowlink/link_fault.h"
#include "support/test_folder.h"

namespace gantry::flowlink {
namespace {

class DeckComposer : public ::testing::Test {
 protected:
  ComposedDeck Compose(const std::string& schedule, const std::string& runspec = "FIELD\n",
                       const std::optional<RestartPoint>& restart = {}) {
    folder.Write("A.DATA",
                 "RUNSPEC\n" + runspec + "START\n 15 'JAN' 2020 /\nSCHEDULE\n" + schedule);
    LinkSettings settings;
    settings.deck = folder / "A.DATA";
    settings.grid = grid;
    return ComposeDeck(settings, "link.py", {"WOPR"}, restart);
  }
  std::string FaultOf(const std::string& schedule, const std::string& runspec = "FIELD\n") {
    try {
      Compose(schedule, runspec);
    } catch (const LinkFault& fault) {
      return fault.what();
    }
    return "";
  }
  /// The lengths of the report steps after the adapter's own first one.
  std::vector<double> StepsOf(const ComposedDeck& deck) {
    std::vector<double> steps;
    DeckTime last = deck.start;
    for (const DeckKeyword& keyword : ReadDeckKeywords(folder.Write("COMPOSED.DATA", deck.text))) {
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
  EXPECT_EQ(StepsOf(Compose(schedule)), (std::vector<double>{17, 29, 9.5, 3, 3}));
  grid = {ReportGrid::Kind::kDays, 30.0};
  EXPECT_EQ(StepsOf(Compose(schedule)), (std::vector<double>{17, 13, 25.5, 3, 1.5, 1.5}));
  grid = {ReportGrid::Kind::kDeck, 0.0};
  EXPECT_EQ(StepsOf(Compose(schedule)), (std::vector<double>{17, 38.5, 3, 3}));
}

TEST_F(DeckComposer, KeepsWhatTheDeckOrdersAtItsTime) {
  const std::string text = Compose("TSTEP\n 1 /\nWEFAC\n 'P' 0.5 /\n/\nTSTEP\n 1 /\n").text;
  const size_t order = text.find("WEFAC\n'P' 0.5 /\n/\n");
  ASSERT_NE(order, std::string::npos);
  EXPECT_EQ(text.substr(order + 18), "DATES\n17 'JAN' 2020 00:00:00 /\n/\nEND\n");
  EXPECT_LT(text.find("PYACTION\nFLOWLINK UNLIMITED /\n'link.py' /\n"), order);
  EXPECT_NE(text.find("SUMMARY\nWOPR\n/\nSCHEDULE\n"), std::string::npos);
}

TEST_F(DeckComposer, GoesOnFromARestartWithItsCallBehindWhatIsSkipped) {
  const std::string schedule = "WEFAC\n/\nTSTEP\n 1 /\nWECON\n/\nTSTEP\n 1 /\n";
  const ComposedDeck deck =
      Compose(schedule, "UNIFOUT\nSOLUTION\nEQUIL\n 1 /\n", RestartPoint{"A_2", 2, 1.0});
  EXPECT_NE(deck.text.find("UNIFOUT\nUNIFIN\nSOLUTION\nRESTART\n'A_2' 2 /\nEQUIL\n"),
            std::string::npos)
      << deck.text;
  const size_t begin = deck.text.find("SCHEDULE\n");
  EXPECT_EQ(deck.text.substr(begin),
            "SCHEDULE\nSKIPREST\nRPTRST\nBASIC=2 /\nWEFAC\n/\n"
            "DATES\n16 'JAN' 2020 00:00:00 /\n/\nWECON\n/\n"
            "PYACTION\nFLOWLINK UNLIMITED /\n'link.py' /\n"
            "DATES\n16 'JAN' 2020 00:00:43 /\n/\nDATES\n17 'JAN' 2020 00:00:00 /\n/\nEND\n");
  EXPECT_EQ(deck.ends, (std::vector<double>{1.0 + kFirstStepDays, 2.0}));
}

TEST_F(DeckComposer, ReadsIncludedFilesFromTheirOwnFolders) {
  folder.Write("sub/wells.inc", "INCLUDE\n 'more.inc' /\n");
  folder.Write("sub/more.inc", "WCONINJE\n I* GAS /\n/ -- END\n");
  const ComposedDeck deck = Compose("INCLUDE\n sub/wells.inc /\nTSTEP\n 1 /\nEND\nTSTEP\n 9 /\n");
  ASSERT_EQ(deck.injected.size(), 1U);
  EXPECT_EQ(deck.injected[0], (std::pair<std::string, std::string>("I*", "GAS")));
  EXPECT_EQ(StepsOf(deck), std::vector<double>{1});
}

TEST_F(DeckComposer, TakesTheDensitiesAndTheUnits) {
  const std::string title = "TITLE\nLAB\nDENSITY\n 53.66 64.49 0.0533 /\n";
  const ComposedDeck deck = Compose("TSTEP\n 1 /\n", title);
  EXPECT_EQ(deck.units, "METRIC") << "a title is no keyword";
  EXPECT_DOUBLE_EQ(deck.oilDensity, 53.66);
  EXPECT_DOUBLE_EQ(deck.waterDensity, 64.49);
  EXPECT_DOUBLE_EQ(deck.gasDensity, 0.0533);
}

TEST_F(DeckComposer, SaysWhichKeywordItCantTakeOver) {
  const std::string path = (folder / "A.DATA").string();
  EXPECT_EQ(FaultOf("ACTIONX\n A /\n/\n"),
            path + ":6: ACTIONX can't be taken over: it changes wells that the host controls");
  EXPECT_NE(FaultOf("TSTEP\n 1 /\n", "LAB\n").find(":2: LAB can't be taken over"),
            std::string::npos);
  EXPECT_NE(FaultOf("WEFAC\n/\n").find("nothing to run"), std::string::npos);
  EXPECT_NE(FaultOf("TSTEP\n 1 x /\n").find(":6: TSTEP holds 'x'"), std::string::npos);
  EXPECT_NE(FaultOf("DATES\n 31 FEB 2020 /\n/\n").find("'31 FEB 2020' is no date"),
            std::string::npos);
  EXPECT_NE(FaultOf("DATES\n 1 JAN 2020 /\n/\n").find("doesn't go on in time"), std::string::npos);
  EXPECT_NE(FaultOf("INCLUDE\n 'A.DATA' /\n").find("includes itself"), std::string::npos);
  EXPECT_NE(FaultOf("TSTEP\n 999999999*1 /\n").find("can't repeat"), std::string::npos);
}

}  // namespace
}  // namespace gantry::flowlink
