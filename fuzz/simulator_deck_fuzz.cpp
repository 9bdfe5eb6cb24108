// A deck of any content: it is read, or refused with its place and reason. A deck that is read is
// started and stepped once, which must leave finite pressures.
// Reads: companions/tanksim/deck_reader.cpp companions/described_toml/described_table.cpp
// Beyond: ReadDeck(

#include "tanksim/deck_reader.h"
#include "tanksim/tank_run.h"
#include "target.h"

using namespace gantry::simulator;
using namespace gantry::fuzz;

FUZZ_TARGET(simulator_deck) {
  try {
    const Deck deck = ReadDeckText(input, "FUZZ.afi");
    if (deck.tanks.size() > 3 || deck.wells.size() > 5) return;
    TankRun run(deck);
    run.AdvanceTo(10.0);
    for (const Tank& tank : run.Tanks()) Require(std::isfinite(tank.Pressure()));
  } catch (const DeckError& error) {
    Require(std::string_view(error.what()).starts_with("FUZZ.afi:"));
  }
}
