#include "support/play.h"

#include <algorithm>
#include <cctype>

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

void Player::Play(const Scene& scene) {
  commands_ = scene.commands;
  PlayAll();
  Texts expected = scene.lines;
  for (size_t i = 0; i < std::min(told_.size(), expected.size()); ++i) {
    const size_t cut = expected[i].find("{...}");
    if (cut != std::string::npos)
      expected[i].replace(cut, 5, told_[i].substr(std::min(cut, told_[i].size())));
  }
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

}  // namespace gantry::test
