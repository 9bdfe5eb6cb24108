#include <string>

#include <gtest/gtest.h>

#include "text/tag_parser.h"

namespace gantry {
namespace {

using Argument = CExtDataServerCmdArgument;

constexpr const char* kSyntax = "Syntax error";
constexpr const char* kArgument = "Bad argument";
constexpr const char* kNumber = "Bad number of arguments";

/// Each argument as its kind and its text, such as "3:100 1:a b".
std::string Shown(const CExtDataServerCmdArgumentCollection& arguments) {
  std::string text;
  for (const auto& argument : arguments) {
    text += (text.empty() ? "" : " ") + std::to_string(argument->Kind) + ":" + argument->Text;
  }
  return text;
}

TEST(Command, SplitsItsArguments) {
  const std::pair<const char*, const char*> cases[] = {
      {"Go", ""},
      {"Go( \t )", ""},
      {"go(100)", "3:100"},
      {"Go( +1-2 , 1.5e3,.5,-x)", "3:+1-2 2:1.5e3 2:.5 2:-x"},
      {"Go(word,w1,,)", "0:word 0:w1"},
      {"Go(1 0)", "3:10"},
      {"Go(\"a, (b) \",'c d',{e \"f'})", "1:a, (b)  1:c d 1:e \"f'"},
      {"Go({})", "1:"},
      {"Go({a}}b})", "1:a}}b"},
      {"Go(a\"b\")", "0:a\"b\""},
      {"Go(\"a\"b)", "1:a 0:b"},
      {"Go(1 \"2\")", "2:1\"2\""},
      {"Go(1(2)", "3:1 3:2"},
      {"Go(1)2)", "3:1"},
      {"Go(\x01\x7f)", "0:\x01\x7f"}};
  for (const auto& [text, expected] : cases) {
    CExtDataServerCmdArgumentCollection arguments;
    TagParser parser = TagParser::ForCommand(text);
    EXPECT_EQ(parser.MatchCommand("Go", arguments, 0, 9), CommandMatch::kMatched) << text;
    EXPECT_EQ(Shown(arguments), expected) << text;
    EXPECT_EQ(parser.ErrorText, "") << text;
  }
}

TEST(Command, TellsWhatIsWrongWithIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"Go", kArgument},     {"Go.x", kArgument},        {"Go(", kSyntax},      {"Go(1", kSyntax},
      {"Go(1,2", kSyntax},   {"Go(\"1)", kSyntax},       {"Go('1\")", kSyntax}, {"Go({1)", kSyntax},
      {"Go(\"\")", kSyntax}, {"Go(\"1\"\"\")", kSyntax}, {"Go()", kNumber},     {"Go(,)", kNumber},
      {"Go(1,2,3)", kNumber}};
  for (const auto& [text, expected] : cases) {
    CExtDataServerCmdArgumentCollection arguments;
    TagParser parser = TagParser::ForCommand(text);
    EXPECT_EQ(parser.MatchCommand("Go", arguments, 1, 2), CommandMatch::kMalformed) << text;
    EXPECT_EQ(parser.ErrorText, expected) << text;
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
  TagParser::ForCommand("Go(" + std::string(300, '7') + ")").MatchCommand("Go", arguments, 1, 1);
  EXPECT_EQ(Shown(arguments), "3:" + std::string(255, '7'));

  std::string many = "Go(1";
  for (int i = 0; i < 50000; ++i) many += ",1";
  TagParser parser = TagParser::ForCommand(many + ")");
  EXPECT_EQ(parser.MatchCommand("Go", arguments, 0, 3), CommandMatch::kMalformed);
  EXPECT_EQ(parser.ErrorText, kNumber);
  EXPECT_LE(arguments.Size(), 3u);
}

}  // namespace
}  // namespace gantry
