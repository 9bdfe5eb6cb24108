#pragma once

#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gantry::test {

using Texts = std::vector<std::string>;

Texts Split(const std::string& text, const std::string& separator);
std::string Joined(const Texts& parts, const std::string& separator);

/// A sentence of a *.play or *.talk file, behind "== ", and the lines below it: "> " before a
/// command, and what comes of it, where "{...}" at the end is any text. What stands before the
/// first sentence or behind "# " is a remark.
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

/// Puts what was told in the place of "{...}" at the end of a line that is expected.
void FillIn(Texts& expected, const Texts& told);

/// Goes by the commands of a scene and tells line by line what comes of them.
class Player {
 public:
  virtual ~Player() = default;

  /// Fails the test where it goes otherwise than it is written.
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

/// One exchange of a talk with a connector.
struct Turn {
  std::string call;  ///< behind "> ": what is asked
  Texts outcome;     ///< behind "< ": what comes of it
  Texts wire;        ///< ">> " and "<< ": what goes out on the wire for it, and what comes back
};

struct Talk {
  std::string name;
  std::vector<Turn> turns;
};

/// The scenes of a file below this folder as talks.
std::vector<Talk> TalksIn(const std::string& file);

/// Makes every call of a talk, with a list for what comes of it, which must be as it is written. A
/// call that fails adds how it did.
void Play(const Talk& talk, const std::function<void(const Turn& turn, Texts& told)>& act);

/// Several values as one line.
template <class... Values>
std::string Line(const Values&... values) {
  std::ostringstream text;
  text.precision(10);
  ((text << values << ' '), ...);
  return text.str().substr(0, text.str().size() - 1);
}

/// The elements of a list as one line.
template <class List>
std::string LineOf(const List& list) {
  std::string line;
  for (const auto& element : list) line += (line.empty() ? "" : " ") + Line(element);
  return line;
}

}  // namespace gantry::test
