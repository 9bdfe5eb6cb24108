#include "support/talk.h"

#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

#include "support/raised.h"

namespace gantry::test {
namespace {

void Take(const std::string& line, std::vector<Talk>& talks) {
  if (line.starts_with("# ")) talks.push_back({line.substr(2), {}});
  if (talks.empty()) return;
  std::vector<Turn>& turns = talks.back().turns;
  if (line.starts_with("> ")) turns.push_back({line.substr(2), {}, {}});
  if (turns.empty()) return;
  if (line.starts_with("< ")) turns.back().outcome.push_back(line.substr(2));
  if (line.starts_with(">>") || line.starts_with("<<")) turns.back().wire.push_back(line);
}

void Cut(std::string& told, const std::string& expected) {
  if (!expected.ends_with("...")) return;
  told.replace(std::min(told.size(), expected.size() - 3), std::string::npos, "...");
}

}  // namespace

std::vector<Talk> TalksIn(const std::string& file) {
  std::vector<Talk> talks;
  std::ifstream text(GANTRY_TEST_FILES + file);
  for (std::string line; std::getline(text, line);) Take(line, talks);
  EXPECT_FALSE(talks.empty()) << file;
  return talks;
}

void Play(const Talk& talk, const std::function<void(const Turn& turn, Texts& told)>& act) {
  for (const Turn& turn : talk.turns) {
    Texts told;
    const std::string failure = Raised([&] { act(turn, told); });
    if (failure != "nothing raised") told.push_back(failure);
    for (size_t i = 0; i < std::min(told.size(), turn.outcome.size()); ++i) {
      Cut(told[i], turn.outcome[i]);
    }
    EXPECT_EQ(told, turn.outcome) << talk.name << ": " << turn.call;
  }
}

}  // namespace gantry::test
