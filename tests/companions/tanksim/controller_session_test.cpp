#include "simulator_side/controller_session.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "sample_deck.h"
#include "support/memory_connection.h"
#include "support/play.h"
#include "support/wire_entries.h"
#include "tanksim/tank_simulator.h"

namespace gantry::simulator::test {
namespace {

using namespace gantry::test;

/// A message with its numbers to six digits, as a reader can check them.
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

/// What a simulator answers to the frames of a controller, and why it has ended the session.
Texts Answers(Deck deck, const std::string& said) {
  constexpr size_t kHeader = 16;  // all answers are of one chunk
  TankSimulator simulator(std::move(deck));
  MemoryConnection connection(said);
  Texts answers;
  std::string end;
  try {
    ControllerSession(simulator, connection).Run();
  } catch (const std::exception& failure) {
    end = failure.what();
  }
  for (std::string_view rest = connection.outgoing; !rest.empty();) {
    uint64_t size = 0;
    std::memcpy(&size, rest.data(), sizeof size);
    answers.push_back("< " + Rounded(Decode(std::string(rest.substr(kHeader, size)))));
    rest.remove_prefix(kHeader + size);
  }
  answers.push_back("| " + end + " ");
  return answers;
}

/// Talks of controllers with a simulator of the sample or of an example, after "= ", as they are
/// written down: "> " what the controller says, "< " what it hears, "| " how the session ends.
class Talk : public testing::TestWithParam<Scene> {};

TEST_P(Talk, GoesAsItIsWritten) {
  Deck deck = SampleDeck();
  std::string said;
  Texts expected;
  for (const std::string& line : GetParam().lines) {
    const std::string rest = line.substr(std::min<size_t>(line.size(), 2));
    if (line.starts_with("= ")) deck = ReadDeck(GANTRY_EXAMPLES "/" + rest);
    if (line.starts_with("> ")) said += Frame(Parse(rest));
    if (line.starts_with("< ") || line.starts_with("| ")) expected.push_back(line + " ");
    if (!line.starts_with("| ")) continue;
    EXPECT_EQ(Answers(deck, said), expected);
    said = "";
    expected = {};
  }
  EXPECT_EQ(said, "") << "a talk without its end";
}

INSTANTIATE_TEST_SUITE_P(Tanksim, Talk, testing::ValuesIn(ScenesOf(GANTRY_SAMPLE_DECKS "/talks")),
                         SceneName);

}  // namespace
}  // namespace gantry::simulator::test
