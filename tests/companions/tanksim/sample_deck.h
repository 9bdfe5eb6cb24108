#pragma once

#include <string>

#include "support/test_folder.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator::test {

/// A black-oil deck of one tank with a producer (P), a water injector (W) and a gas injector (G),
/// the same reservoir in either unit system. `tank` is added to the tank's keys, which an empty
/// line ends.
inline std::string SampleDeckText(bool isMetric = false, const std::string& tank = "") {
  const std::string folder = GANTRY_SAMPLE_DECKS;
  std::string text =
      gantry::test::TestFolder::Read(folder + (isMetric ? "/sample_metric.afi" : "/sample.afi"));
  return text.insert(text.find("\n\n") + 1, tank);
}

inline Deck SampleDeck(bool isMetric = false, const std::string& tank = "") {
  return ReadDeckText(SampleDeckText(isMetric, tank), "sample.afi");
}

}  // namespace gantry::simulator::test
