#include "host/text/tag_parser.h"

#include <array>
#include <cstring>

#include <gtest/gtest.h>

namespace gantry {
namespace {

std::string ReadingOf(const std::string& path, auto handle) {
  std::array<char, 512> reply = {};
  TagParser parser = TagParser::ForReading(path, reply);
  EXPECT_TRUE(handle(parser)) << path;
  return reply.data();
}

TEST(TagParser, TakesAWordWithoutRegardToCaseUpToADotOrABracket) {
  struct Case {
    const char* path;
    const char* name;
    bool matches;
    const char* rest;  ///< the word behind
  };
  const Case cases[] = {
      {"Intersect.Rest", "Intersect", true, "Rest"},
      {"iNTERSECT.Rest", "Intersect", true, "Rest"},
      {"...Intersect...Rest", "Intersect", true, "Rest"},
      {"Intersect(Rest", "Intersect", true, "(Rest"},
      {"Intersect", "Intersect", true, ""},
      {"Intersected.Rest", "Intersect", false, "Intersected"},
      {"Inter.Rest", "Intersect", false, "Inter"},
      {" Intersect", "Intersect", false, " Intersect"},
      {"", "Intersect", false, ""},
      {"Count.Rest", "$Count", true, "Rest"},
      {"$Count.Rest", "$Count", true, "Rest"},
      {"$$Count", "$Count", false, "$$Count"},
      {"$Name", "Name", false, "$Name"},
  };
  for (const Case& c : cases) {
    TagParser parser = TagParser::ForCommand(c.path);
    EXPECT_EQ(parser.MatchWord(c.name), c.matches) << c.path;
    EXPECT_EQ(parser.NextWord(), c.rest) << c.path;
  }
}

TEST(TagParser, FormatsAReadByTheTypeOfTheProperty) {
  EXPECT_EQ(
      ReadingOf("N", [n = int32_t{-7}](TagParser& p) mutable { return p.IntProperty(n, "n"); }),
      "-7");
  EXPECT_EQ(ReadingOf("B", [b = true](TagParser& p) mutable { return p.BoolProperty(b, "B"); }),
            "1");
  EXPECT_EQ(
      ReadingOf("S", [s = int16_t{9}](TagParser& p) mutable { return p.ShortProperty(s, "S"); }),
      "9");
  EXPECT_EQ(
      ReadingOf("D", [d = 1234567.0](TagParser& p) mutable { return p.DoubleProperty(d, "D"); }),
      "1.23457e+06");
  EXPECT_EQ(ReadingOf("T", [t = std::string("a b")](
                               TagParser& p) mutable { return p.StringProperty(t, "T"); }),
            "a b");
}

TEST(TagParser, WritesWhatTheTextHolds) {
  int32_t number = 1;
  EXPECT_TRUE(TagParser::ForWriting("N", " 42x").IntProperty(number, "N"));
  EXPECT_EQ(number, 42);
  bool flag = false;
  EXPECT_TRUE(TagParser::ForWriting("B", "-2").BoolProperty(flag, "B"));
  EXPECT_TRUE(flag);
  int16_t small = 0;
  EXPECT_TRUE(TagParser::ForWriting("S", "70000").ShortProperty(small, "S"));
  EXPECT_EQ(small, 32767);
  double real = 1.0;
  EXPECT_TRUE(TagParser::ForWriting("D", "none").DoubleProperty(real, "D"));
  EXPECT_EQ(real, 0.0);
  std::string text;
  EXPECT_TRUE(TagParser::ForWriting("T", " as it is ").StringProperty(text, "T"));
  EXPECT_EQ(text, " as it is ");
  EXPECT_TRUE(TagParser::ForWriting("T", nullptr).StringProperty(text, "T"));
  EXPECT_EQ(text, "");
}

TEST(TagParser, HandlesAWriteToAReadOnlyNameAndEverythingBehindItWithoutAChange) {
  int32_t number = 1;
  TagParser parser = TagParser::ForWriting("$N.M", "5");
  EXPECT_TRUE(parser.IntProperty(number, "$N"));
  EXPECT_TRUE(parser.IntProperty(number, "M"));
  EXPECT_EQ(number, 1);
}

TEST(TagParser, TransfersNothingForACommand) {
  int32_t number = 1;
  EXPECT_TRUE(TagParser::ForCommand("N").IntProperty(number, "N"));
  EXPECT_EQ(number, 1);
}

TEST(TagParser, CutsAReplyToItsFieldAndTerminatesIt) {
  std::array<char, 16> field;
  field.fill('#');
  std::string text(100000, 't');
  EXPECT_TRUE(TagParser::ForReading("T", std::span(field).first(8)).StringProperty(text, "T"));
  EXPECT_STREQ(field.data(), "ttttttt");
  EXPECT_EQ(field[8], '#');
}

TEST(TagParser, PlacesAReplyOfAnyLengthInANewText) {
  std::unique_ptr<char[]> reply;
  std::string text(100000, 't');
  EXPECT_TRUE(TagParser::ForAllocatedReply("T", reply).StringProperty(text, "T"));
  EXPECT_EQ(reply.get(), text);
}

TEST(TagParser, ReachesOneElementOfAnArray) {
  std::vector<double> values = {1.0, 2.5};
  EXPECT_EQ(ReadingOf("V[1]", [&](TagParser& p) { return p.DoubleArrayItem(values, "V"); }), "2.5");
  EXPECT_TRUE(TagParser::ForWriting("v[0]", "7").DoubleArrayItem(values, "V"));
  EXPECT_EQ(values, (std::vector<double>{7.0, 2.5}));
  for (const char* path : {"V[2]", "V", "V[-1]", "V[99999999999]"}) {
    TagParser parser = TagParser::ForWriting(path, "7");
    EXPECT_FALSE(parser.DoubleArrayItem(values, "V")) << path;
    EXPECT_EQ(parser.ErrorText, "Index out of range") << path;
  }
}

TEST(TagParser, TakesAnIndexOrAKeyOnlyWhenItIsWhole) {
  struct Case {
    std::string path;
    int32_t index;
    std::string key;
  };
  const Case cases[] = {
      {"[0].W", 0, ""},
      {"[007].W", 7, ""},
      {"[99999999999].W", 2147483647, ""},
      {"[{P1}].W", -1, "P1"},
      {"[{a]b}c d}].W", -1, "a]b}c d"},
      {"[{}].W", -1, ""},
      {"[{" + std::string(300, 'k') + "}].W", -1, std::string(255, 'k')},
      {"W", -1, ""},
  };
  for (const Case& c : cases) {
    TagParser parser = TagParser::ForCommand(c.path);
    EXPECT_EQ(parser.ParseIndex(), c.index) << c.path;
    EXPECT_EQ(parser.ParseKey(), c.key) << c.path;
    EXPECT_TRUE(parser.MatchWord("W")) << c.path;
  }
  for (const char* path :
       {"[", "[]", "[3", "[-3]", "[ 3]", "[3a]", "[{", "[{a", "[{a}", "[{a]", "{a}"}) {
    TagParser parser = TagParser::ForCommand(path);
    EXPECT_EQ(parser.ParseIndex(), -1) << path;
    EXPECT_EQ(parser.ParseKey(), "") << path;
    EXPECT_EQ(parser.NextWord(), path[0] == '[' ? "" : path) << path;
  }
}

TEST(TagParser, ReadsAnArrayOfExactlyTheNumbersAskedFor) {
  struct Case {
    const char* value;
    std::vector<double> numbers;
    const char* error;
  };
  const Case cases[] = {
      {"1|2.5|-3}", {1, 2.5, -3}, ""},
      {"1|2.5|-3", {1, 2.5, -3}, ""},
      {"1||x}", {1, 0, 0}, ""},
      {"1}2}3}}4", {1, 2, 3}, ""},
      {"", {}, "Badly formed value array string"},
      {"}1|2|3", {}, "Too few elements in array"},
      {"1|2}", {}, "Too few elements in array"},
      {"1|2|3|4}", {}, "Too many elements in array"},
  };
  for (const Case& c : cases) {
    std::vector<double> target(3);
    std::string error;
    const TagParser parser = TagParser::ForWriting("V", c.value);
    EXPECT_EQ(parser.ParseValueArray(target, error), c.error[0] == '\0') << c.value;
    EXPECT_EQ(error, c.error) << c.value;
    if (error.empty()) {
      EXPECT_EQ(target, c.numbers) << c.value;
    }
  }
}

}  // namespace
}  // namespace gantry
