#include <string>

#include <gtest/gtest.h>

#include "text/cases.h"
#include "text/tag_parser.h"

namespace gantry::test {
namespace {

/// Each argument as its kind and its text, such as "3:100 1:a b".
std::string Shown(const CExtDataServerCmdArgumentCollection& arguments) {
  std::string text;
  for (const auto& argument : arguments) {
    text += (text.empty() ? "" : " ") + std::to_string(argument->Kind) + ":" + argument->Text;
  }
  return text;
}

TEST(Command, SplitsItsArguments) {
  auto cases = CasesOf("command");
  cases.insert(cases.end(), {{"Go( \t )", ""}, {"Go(\x01\x7f)", "0:\x01\x7f"}});
  for (const auto& c : cases) {
    CExtDataServerCmdArgumentCollection arguments;
    TagParser parser = TagParser::ForCommand(c[0]);
    EXPECT_EQ(parser.MatchCommand("Go", arguments, 0, 9), CommandMatch::kMatched) << c[0];
    EXPECT_EQ(Shown(arguments), c[1]) << c[0];
    EXPECT_EQ(parser.ErrorText, "") << c[0];
  }
}

TEST(Command, TellsWhatIsWrongWithIt) {
  for (const auto& c : CasesOf("refused")) {
    CExtDataServerCmdArgumentCollection arguments;
    TagParser parser = TagParser::ForCommand(c[0]);
    EXPECT_EQ(parser.MatchCommand("Go", arguments, 1, 2), CommandMatch::kMalformed) << c[0];
    EXPECT_EQ(parser.ErrorText, c[1]) << c[0];
  }
}

TEST(Command, LeavesAnotherOneToTheNextTest) {
  CExtDataServerCmdArgumentCollection arguments;
  TagParser parser = TagParser::ForCommand("Intersect.Stop(1)");
  EXPECT_TRUE(parser.MatchWord("Intersect"));
  EXPECT_EQ(parser.MatchCommand("Start", arguments, 0, 0), CommandMatch::kOther);
  EXPECT_EQ(parser.ErrorText, "");
  EXPECT_EQ(parser.MatchCommand("STOP", arguments, 1, 1), CommandMatch::kMatched);
  EXPECT_EQ(parser.MatchCommand("", arguments, 0, 0), CommandMatch::kMatched);
  EXPECT_TRUE(arguments.IsEmpty());
}

TEST(Command, GivesTheNumbersOfItsArguments) {
  CExtDataServerCmdArgumentCollection arguments;
  TagParser::ForCommand("Go(365.25,\"7\",word)").MatchCommand("Go", arguments, 3, 3);
  std::vector<std::pair<double, int32_t>> numbers;
  for (const auto& a : arguments) numbers.emplace_back(a->NumberValue, a->IntegerValue);
  EXPECT_EQ(numbers, (std::vector<std::pair<double, int32_t>>{{365.25, 365}, {3.4e35, 0}, {0, 0}}));
}

TEST(Command, BoundsWhatItKeepsOfALongOne) {
  CExtDataServerCmdArgumentCollection arguments;
  TagParser::ForCommand("Go(" + std::string(300, '7') + "x)").MatchCommand("Go", arguments, 1, 1);
  EXPECT_EQ(Shown(arguments), "3:" + std::string(255, '7'));

  std::string many = "Go(1";
  for (int i = 0; i < 50000; ++i) many += ",1";
  TagParser parser = TagParser::ForCommand(many + ")");
  EXPECT_EQ(parser.MatchCommand("Go", arguments, 0, 3), CommandMatch::kMalformed);
  EXPECT_EQ(parser.ErrorText, "Bad number of arguments");
  EXPECT_LE(arguments.Size(), 3u);
}

}  // namespace
}  // namespace gantry::test
