// A deck of any content: it is read, or refused with its place and reason. A deck that is read is
// started and stepped once, which must leave finite pressures.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tanksim/deck_reader.h"
#include "tanksim/tank_run.h"

using namespace gantry::simulator;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    const Deck deck = ReadDeckText({reinterpret_cast<const char*>(data), size}, "FUZZ.afi");
    if (deck.tanks.size() > 3 || deck.wells.size() > 5) return 0;
    TankRun run(deck);
    run.AdvanceTo(10.0);
    for (const Tank& tank : run.Tanks()) {
      if (!std::isfinite(tank.Pressure())) std::abort();
    }
  } catch (const DeckError& error) {
    if (std::string_view(error.what()).find("FUZZ.afi:") != 0) std::abort();
  }
  return 0;
}
