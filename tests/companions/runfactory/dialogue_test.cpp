#include "runfactory/dialogue.h"

#include <vector>

#include <gtest/gtest.h>

namespace gantry::cluster {
namespace {

using State = Dialogue::State;

std::string Lines(const std::vector<std::string>& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += FramedText(line);
  return bytes;
}

const std::vector<std::string> kRun = {"1", "0", "C:\\cases\\", "NORTH", "4", "20172", "jo", "1"};

TEST(Dialogue, IsCompleteWithItsLastByteHoweverTheBytesCome) {
  Dialogue dialogue;
  const std::string bytes = Lines(kRun);
  for (const char byte : bytes.substr(0, bytes.size() - 1)) {
    ASSERT_EQ(dialogue.Take({&byte, 1}), State::kGoingOn);
  }
  EXPECT_EQ(dialogue.Take("1"), State::kComplete);
  EXPECT_EQ(dialogue.Refusal(), "");
  const RunRequest& request = dialogue.Request();
  EXPECT_EQ(std::tie(request.directory, request.baseName, request.user),
            std::tuple("C:\\cases\\", "NORTH", "jo"));
  EXPECT_EQ(std::tie(request.parallel, request.versionCode, request.logging),
            std::tuple(4, 20172, true));
}

TEST(Dialogue, NamesTheLineThatItCannotRead) {
  const std::vector<std::tuple<size_t, std::string, std::string>> cases = {
      {1, "-1", "scenario number"},       {4, "513", "number of processors"},
      {4, "2x", "number of processors"},  {5, "", "version code"},
      {5, "99999999999", "version code"}, {6, "", "user name"},
      {6, "a\nb", "user name"},           {2, std::string("/a\0b", 4), "case directory"},
      {7, "2", "logging flag"},
  };
  for (const auto& [line, text, what] : cases) {
    std::vector<std::string> lines = kRun;
    lines[line] = text;
    Dialogue dialogue;
    EXPECT_EQ(dialogue.Take(Lines(lines)), State::kComplete);
    EXPECT_EQ(dialogue.Refusal(), "The run factory can't read the " + what);
  }
}

TEST(Dialogue, LetsADriverOfAnotherVersionGoAndBreaksOnWhatNoDriverSays) {
  EXPECT_EQ(Dialogue().Take(FramedText("0")), State::kDeclined);
  const std::vector<std::string> cases = {
      FramedText("2"),        std::string("GET / HTTP/1.1\r\n"),
      std::string(4, '\xff'), Lines({"1", "0"}) + std::string("\x01\x10\0\0", 4),
      Lines(kRun) + "x",
  };
  for (const std::string& bytes : cases) {
    Dialogue dialogue;
    EXPECT_EQ(dialogue.Take(bytes), State::kBroken);
    EXPECT_NE(dialogue.Fault(), "");
    EXPECT_EQ(dialogue.Take("more"), State::kBroken);
  }
}

}  // namespace
}  // namespace gantry::cluster
