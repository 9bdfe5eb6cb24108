// Text paths: words, properties of every kind, lists, and the arrays in a value.

#include "text/tag_parser.h"

#include <array>

#include <gtest/gtest.h>

#include "text/cases.h"
#include "text/data_server_object.h"
#include "text/number_text.h"

namespace gantry::test {
namespace {

/// An item with a property of every kind.
class Tank : public CExtDataServerObject {
 public:
  explicit Tank(std::string name = {}) : name_(std::move(name)) {}
  bool Handle(TagParser& parser, TagContext /*context*/) override {
    return parser.StringProperty(name_, "Name") || parser.IntProperty(number_, "Number") ||
           parser.IntProperty(number_, "$Fixed") || parser.BoolProperty(flag_, "Flag") ||
           parser.ShortProperty(small_, "Small") || parser.DoubleProperty(real_, "Real") ||
           parser.DoubleArrayItem(values_, "V");
  }
  const std::string& GetName() const override { return name_; }

 private:
  std::string name_;
  int32_t number_ = -7;
  bool flag_ = true;
  int16_t small_ = 9;
  double real_ = 1234567.0;
  std::vector<double> values_ = {1.0, 2.5};
};

class TankList : public CExcStdDataServerObjectList<Tank> {
 public:
  TankList() { Items = {Tank("A"), Tank("B"), Tank("b"), Tank("B")}; }
  std::string GetItemWord() const override { return "Tank"; }

  /// What a read answers, or its error, or "none" where nothing took the path.
  std::string Read(const std::string& path) {
    std::array<char, 512> reply = {};
    TagParser parser = TagParser::ForReading(path, reply);
    const bool handled = Handle(parser, false, nullptr, {});
    return handled ? reply.data() : Failure(parser);
  }
  std::string Write(const std::string& path, const char* value) {
    TagParser parser = TagParser::ForWriting(path, value);
    return Handle(parser, false, nullptr, {}) ? "done" : Failure(parser);
  }
  std::string Names() const {
    std::string names;
    for (const Tank& tank : Items) names += tank.GetName().empty() ? "." : tank.GetName();
    return names;
  }

 private:
  static std::string Failure(const TagParser& parser) {
    return parser.ErrorText.empty() ? "none" : parser.ErrorText;
  }
};

TEST(TextPath, IsReadDownToAProperty) {
  auto reads = CasesOf("read");
  const std::string many(100000, '0');
  reads.insert(reads.end(), {{"Tank[0" + many + "].Name", "A"},
                             {"Tank" + std::string(100000, '['), "none"},
                             {"Tank[{" + many + "}].Name", "none"}});
  for (const auto& c : reads) {
    TankList tanks;
    EXPECT_EQ(tanks.Read(c[0]), c[1]) << c[0].substr(0, 40);
    EXPECT_EQ(tanks.Names(), "ABbB") << c[0].substr(0, 40);
  }
}

TEST(TextPath, WritesAPropertyOrChangesItsList) {
  for (const auto& c : CasesOf("write")) {
    TankList tanks;
    EXPECT_EQ(tanks.Write(c[0], c[1].empty() ? nullptr : c[1].c_str()), c[2]) << c[0];
    EXPECT_EQ(tanks.Names(), c[3]) << c[0];
    EXPECT_EQ(tanks.Read(c[0]), c[4]) << c[0];
  }
}

TEST(TextPath, GoesByTheWordThatItsListIsGiven) {
  TankList tanks;
  std::array<char, 512> reply = {};
  TagParser parser = TagParser::ForReading("Vessel.Count", reply);
  EXPECT_TRUE(tanks.Handle(parser, false, nullptr, "Vessel"));
  TagParser rest = TagParser::ForReading("[1].Small", reply);
  EXPECT_TRUE(tanks.HandleItems(rest, nullptr));
  EXPECT_STREQ(reply.data(), "9");
}

TEST(TagParser, TakesAWordWithoutRegardToCaseUpToADotOrABracket) {
  for (const auto& c : CasesOf("word")) {
    TagParser parser = TagParser::ForCommand(c[0]);
    EXPECT_EQ(parser.MatchWord(c[1]) ? "yes" : "no", c[2]) << c[0];
    EXPECT_EQ(parser.NextWord(), c[3]) << c[0];
  }
}

TEST(TagParser, ChangesNothingBehindAReadOnlyNameOrForACommand) {
  int32_t number = 1;
  TagParser parser = TagParser::ForWriting("$N.M", "5");
  EXPECT_TRUE(parser.IntProperty(number, "$N"));
  EXPECT_TRUE(parser.IntProperty(number, "M"));
  EXPECT_TRUE(TagParser::ForCommand("N").IntProperty(number, "N"));
  EXPECT_EQ(number, 1);
}

TEST(TagParser, CutsAReplyToItsFieldOrMakesRoomForAllOfIt) {
  std::array<char, 16> field;
  field.fill('#');
  std::string text(100000, 't');
  EXPECT_TRUE(TagParser::ForReading("T", std::span(field).first(8)).StringProperty(text, "T"));
  EXPECT_STREQ(field.data(), "ttttttt");
  EXPECT_EQ(field[8], '#');
  std::unique_ptr<char[]> reply;
  EXPECT_TRUE(TagParser::ForAllocatedReply("T", reply).StringProperty(text, "T"));
  EXPECT_EQ(reply.get(), text);
}

TEST(TagParser, TakesAnIndexOrAKeyOnlyWhenItIsWhole) {
  auto cases = CasesOf("index");
  cases.push_back({"[{" + std::string(300, 'k') + "}].W", "-1", std::string(255, 'k'), "W"});
  for (const auto& c : cases) {
    TagParser parser = TagParser::ForCommand(c[0]);
    EXPECT_EQ(std::to_string(parser.ParseIndex()), c[1]) << c[0];
    EXPECT_EQ(parser.ParseKey(), c[2]) << c[0];
    EXPECT_EQ(parser.NextWord(), c[3]) << c[0];
  }
}

TEST(TagParser, ReadsAnArrayOfExactlyTheNumbersAskedFor) {
  for (const auto& c : CasesOf("array")) {
    std::vector<double> numbers(3);
    std::string outcome;
    if (TagParser::ForWriting("V", c[0].c_str()).ParseValueArray(numbers, outcome)) {
      for (const double number : numbers) outcome += FormatDouble(number) + " ";
      outcome.pop_back();
    }
    EXPECT_EQ(outcome, c[1]) << c[0];
  }
}

}  // namespace
}  // namespace gantry::test
