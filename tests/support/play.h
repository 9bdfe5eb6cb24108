#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gantry::test {

using Texts = std::vector<std::string>;

Texts Split(const std::string& text, const std::string& separator);
std::string Joined(const Texts& parts, const std::string& separator);

/// A sentence of a *.play or *.talk file, behind "== ", and the lines below it: "> " before a
/// command, and what comes of it. What stands before the first sentence or behind "# " is a remark.
struct Scene {
  std::string name;
  Texts commands;
  Texts lines;
};
void PrintTo(const Scene& scene, std::ostream* out);
/// As the name of a test.
std::string SceneName(const ::testing::TestParamInfo<Scene>& scene);

/// Of one file, or of all in a folder.
std::vector<Scene> ScenesOf(const std::filesystem::path& place);

/// Goes by the commands of a scene and tells line by line what comes of them.
class Player {
 public:
  virtual ~Player() = default;

  /// Fails the test where it goes otherwise than it is written; "{...}" at the end of a line that
  /// is expected is any text.
  void Play(const Scene& scene);

 protected:
  /// All of the scene, as it goes unless it is told otherwise.
  virtual void PlayAll();
  void DoNext();
  virtual void Do(const std::string& verb, const std::string& words) = 0;
  /// A line that comes again is told once, with a dot for each other time.
  void Tell(const std::string& line);

  Texts commands_;
  std::string words_;  ///< of the last command, behind its verb

 private:
  Texts told_;
};

}  // namespace gantry::test
