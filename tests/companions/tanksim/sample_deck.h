#pragma once

#include <string>

#include "support/test_folder.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator::test {

/// A black-oil deck of one tank with a producer (P), a water injector (W) and a gas injector (G).
/// `tank` is added to the tank's keys, which an empty line ends.
inline Deck SampleDeck(const std::string& tank = "") {
  std::string text = gantry::test::TestFolder::Read(GANTRY_SAMPLE_DECKS "/sample.afi");
  return ReadDeckText(text.insert(text.find("\n\n") + 1, tank), "sample.afi");
}

}  // namespace gantry::simulator::test
