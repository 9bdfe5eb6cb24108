// A deck for flow, and behind a form feed a file that it may include. It is composed around a run,
// or refused with a reason; what was composed is a deck again, whose report steps go on in time.
// Reads: companions/flowlink/deck_keywords.cpp companions/flowlink/deck_composer.cpp
// Reads: companions/flowlink/report_times.cpp companions/flowlink/deck_rules.cpp
// Reads: companions/flowlink/well_orders.cpp

#include "flowlink/deck_composer.h"
#include "flowlink/deck_keywords.h"
#include "flowlink/link_fault.h"
#include "target.h"

using namespace gantry::flowlink;
using namespace gantry::fuzz;

namespace {

void Compose(const LinkSettings& settings, const RunBegin& begin) {
  const ComposedDeck deck = ComposeDeck(settings, "link.py", {"WOPR"}, begin);
  Require(std::ranges::is_sorted(deck.ends) && std::ranges::is_sorted(deck.orders));
  for (const WellOrder& order : deck.wellOrders) order.Means("P1");
  ReadDeckKeywords(WriteFile("COMPOSED.DATA", deck.text.Text()));
  deck.text.PlaceOf(static_cast<size_t>(std::ranges::count(deck.text.Text(), '\n')));
}

/// A deck in which no item is repeated more than nine times: thousands take long and reach no more.
std::string WithFewRepeats(std::string_view deck) {
  std::string kept;
  for (size_t i = 0; i < deck.size(); ++i) {
    const size_t behind = std::min(deck.find_first_not_of("0123456789", i), deck.size() - 1);
    if (deck[behind] == '*' && behind > i) i = behind - 1;
    kept += deck[i];
  }
  return kept;
}

}  // namespace

FUZZ_TARGET(deck_keywords) {
  LinkSettings settings;
  const uint8_t choice = TakeByte(input);
  const auto kind = static_cast<ReportGrid::Kind>(choice % 3);
  const bool goesOn = choice / 3 % 2 == 1;
  settings.grid = {ReportGrid::Kind::kDeck, 10.0};
  settings.deck = WriteFile("A.DATA", WithFewRepeats(TakeUpTo('\f', input)));
  WriteFile("B", WithFewRepeats(input));
  CheckDeck(settings);
  MayRefuse<LinkFault>([&] {
    // A deck may go on for thousands of years: a grid is laid over that of one.
    if (kind != ReportGrid::Kind::kDeck &&
        ComposeDeck(settings, "link.py", {}, {}).ends.back() < 366.0) {
      settings.grid.kind = kind;
    }
    Compose(settings, goesOn ? RunBegin{RestartPoint{"A_2", 2, 31.0}, "UDQ\n/\n"} : RunBegin{});
  });
}
