#pragma once

#include <string>

#include "support/test_folder.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator::test {

/// A black-oil deck of one tank with a producer (P), a water injector (W) and a gas injector (G),
/// the same reservoir in either unit system. `tank` is added to the tank's keys, which an empty
/// line ends.
inline Deck SampleDeck(bool isMetric = false, const std::string& tank = "") {
  const std::string file = isMetric ? "sample_metric.afi" : "sample.afi";
  std::string text = gantry::test::TestFolder::Read(GANTRY_SAMPLE_DECKS "/" + file);
  return ReadDeckText(text.insert(text.find("\n\n") + 1, tank), file);
}

}  // namespace gantry::simulator::test
