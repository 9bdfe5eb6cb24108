#include "support/play.h"

#include <algorithm>
#include <cctype>

#include "support/raised.h"
#include "support/test_folder.h"

namespace gantry::test {

Texts Split(const std::string& text, const std::string& separator) {
  Texts parts;
  for (size_t at = 0, end = 0; end != std::string::npos; at = end + separator.size()) {
    end = text.find(separator, at);
    parts.push_back(text.substr(at, end - at));
  }
  return parts;
}

std::string Joined(const Texts& parts, const std::string& separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.name; }

std::string SceneName(const ::testing::TestParamInfo<Scene>& scene) {
  std::string name = scene.param.name;
  std::ranges::replace_if(
      name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

std::vector<Scene> ScenesOf(const std::filesystem::path& place) {
  std::vector<Scene> scenes;
  if (std::filesystem::is_directory(place)) {
    for (const auto& file : std::filesystem::directory_iterator(place)) {
      for (Scene& scene : ScenesOf(file.path())) scenes.push_back(std::move(scene));
    }
    std::ranges::sort(scenes, {}, &Scene::name);
    return scenes;
  }
  for (const std::string& line : Split(TestFolder::Read(place), "\n")) {
    if (line.starts_with("== ")) {
      scenes.push_back({line.substr(3), {}, {}});
    } else if (!scenes.empty() && !line.empty() && !line.starts_with("# ")) {
      scenes.back().lines.push_back(line);
      if (line.starts_with("> ")) scenes.back().commands.push_back(line.substr(2));
    }
  }
  return scenes;
}

void FillIn(Texts& expected, const Texts& told) {
  for (size_t i = 0; i < std::min(told.size(), expected.size()); ++i) {
    const size_t cut = expected[i].find("{...}");
    if (cut != std::string::npos)
      expected[i].replace(cut, 5, told[i].substr(std::min(cut, told[i].size())));
  }
}

void Player::Play(const Scene& scene) {
  commands_ = scene.commands;
  PlayAll();
  Texts expected = scene.lines;
  FillIn(expected, told_);
  EXPECT_EQ(Joined(told_, "\n"), Joined(expected, "\n"));
}

void Player::PlayAll() {
  while (!commands_.empty()) DoNext();
}

void Player::DoNext() {
  const std::string command = commands_.front();
  commands_.erase(commands_.begin());
  told_.push_back("> " + command);
  const std::string verb = Split(command, " ")[0];
  words_ = command.substr(std::min(verb.size() + 1, command.size()));
  Do(verb, std::string(words_));
}

void Player::Tell(const std::string& line) {
  if (told_.back().substr(0, told_.back().find(" ..")) == line) {
    told_.back() += told_.back() == line ? " .." : ".";
  } else {
    told_.push_back(line);
  }
}

std::vector<Talk> TalksIn(const std::string& file) {
  std::vector<Talk> talks;
  for (const Scene& scene : ScenesOf(GANTRY_TEST_FILES + file)) {
    std::vector<Turn>& turns = talks.emplace_back(Talk{scene.name, {}}).turns;
    for (const std::string& line : scene.lines) {
      const bool isCall = line.starts_with("> "), isOutcome = line.starts_with("< ");
      if (isCall) turns.push_back({line.substr(2), {}, {}});
      if (isOutcome) turns.back().outcome.push_back(line.substr(2));
      if (!isCall && !isOutcome) turns.back().wire.push_back(line);
    }
  }
  EXPECT_FALSE(talks.empty()) << file;
  return talks;
}

void Play(const Talk& talk, const std::function<void(const Turn& turn, Texts& told)>& act) {
  for (const Turn& turn : talk.turns) {
    Texts told, expected = turn.outcome;
    const std::string failure = Raised([&] { act(turn, told); });
    if (failure != "nothing raised") told.push_back(failure);
    FillIn(expected, told);
    EXPECT_EQ(told, expected) << talk.name << ": " << turn.call;
  }
}

}  // namespace gantry::test
