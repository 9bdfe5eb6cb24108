#include "simulator_side/controller_session.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "sample_deck.h"
#include "served_simulator.h"
#include "support/wire_entries.h"

namespace gantry::simulator::test {
namespace {

using namespace gantry::test;

/// Numbers to six digits, as a reader can check them.
std::string Rounded(Entries entries) {
  for (Entry& entry : entries) {
    const auto* const numbers = std::get_if<Numbers>(&entry.data);
    if (numbers == nullptr) continue;
    Texts texts;
    for (const double number : *numbers) texts.push_back(fmt::format("{:.6g}", number));
    entry.data = texts;
  }
  return Describe(entries);
}

/// Talks of a controller with the sample's simulator as they are written down: "> " what the
/// controller says, "< " what it hears, "| " why the simulator has ended the session, if it has.
class Talk : public testing::TestWithParam<const char*> {
 protected:
  struct Partners {
    ServedSimulator simulator{SampleDeck()};
    std::optional<RawController> controller{simulator.Port()};
  };

  void Take(const std::string& line) {
    const std::string rest = line.substr(std::min<size_t>(line.size(), 2));
    if (line.starts_with("> ") && !partners_) partners_.emplace();
    if (line.starts_with("> ")) partners_->controller->Send(Parse(rest));
    if (line.starts_with("< ")) {
      EXPECT_EQ(Rounded(partners_->controller->Receive()), rest + " ");
    }
    if (!line.starts_with("|")) return;
    partners_->controller.reset();
    EXPECT_EQ(partners_->simulator.Failure(), rest);
    partners_.reset();
  }

 private:
  std::optional<Partners> partners_;
};

TEST_P(Talk, GoesAsItIsWritten) {
  std::istringstream lines(
      TestFolder::Read(GANTRY_SAMPLE_DECKS "/talks/" + std::string(GetParam()) + ".talk"));
  for (std::string line; std::getline(lines, line);) Take(line);
}

INSTANTIATE_TEST_SUITE_P(Sample, Talk,
                         testing::Values("positions_to_the_end",
                                         "questions_about_a_black_oil_model",
                                         "wells_are_shut_and_opened_and_abandoned",
                                         "wells_hold_their_limits_at_once",
                                         "messages_that_are_refused"),
                         [](const auto& talk) { return std::string(talk.param); });

}  // namespace
}  // namespace gantry::simulator::test
