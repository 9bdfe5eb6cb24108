// Text paths: words, properties of every kind, lists, and the arrays in a value.

#include "text/tag_parser.h"

#include <array>

#include <gtest/gtest.h>

#include "text/data_server_object.h"

namespace gantry {
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
  const std::string many(100000, '0');
  const std::pair<std::string, std::string> reads[] = {{"Tank.$Count", "4"},
                                                       {"...Tank...count", "4"},
                                                       {"TANK[003].number", "-7"},
                                                       {"Tank[0].Flag", "1"},
                                                       {"Tank[0].Small", "9"},
                                                       {"Tank[0].Real", "1.23457e+06"},
                                                       {"Tank[0].V[1]", "2.5"},
                                                       {"Tank[0].V[2]", "Index out of range"},
                                                       {"Tank[0].V", "Index out of range"},
                                                       {"Tank[{b}].Name", "b"},
                                                       {"Tank[4].Name", "none"},
                                                       {"Tank[{}].Name", "none"},
                                                       {"Tank[0].Other", "none"},
                                                       {"Tank.Add", "none"},
                                                       {"Vessel[0].Name", "none"},
                                                       {"Tank[0" + many + "].Name", "A"},
                                                       {"Tank" + std::string(100000, '['), "none"},
                                                       {"Tank[{" + many + "}].Name", "none"}};
  for (const auto& [path, answer] : reads) {
    TankList tanks;
    EXPECT_EQ(tanks.Read(path), answer) << path.substr(0, 40);
    EXPECT_EQ(tanks.Names(), "ABbB") << path.substr(0, 40);
  }
}

TEST(TextPath, WritesAPropertyOrChangesItsList) {
  struct Case {
    const char* path;
    const char* value;
    const char* outcome;
    std::string names;
    const char* readBack = "none";
  };
  constexpr const char* kBadIndex = "Attempting to remove an object at an invalid index";
  const Case cases[] = {{"Tank.$Count", "9", "done", "ABbB", "4"},
                        {"Tank.Add", "", "done", "ABbB."},
                        {"Tank.Reset", "", "done", ""},
                        {"Tank.Delete", "1", "done", "AbB"},
                        {"Tank.Delete", "4", kBadIndex, "ABbB"},
                        {"Tank.Delete", "-1", kBadIndex, "ABbB"},
                        {"Tank[{B}].Name", "C", "done", "ACbB", "B"},
                        {"Tank[0].Name", nullptr, "done", ".BbB", ""},
                        {"Tank[0].Number", " 42x", "done", "ABbB", "42"},
                        {"Tank[0].Fixed", "42", "done", "ABbB", "-7"},
                        {"Tank[0].Flag", "-2", "done", "ABbB", "1"},
                        {"Tank[0].Flag", "0", "done", "ABbB", "0"},
                        {"Tank[0].Small", "70000", "done", "ABbB", "32767"},
                        {"Tank[0].Real", "none", "done", "ABbB", "0"},
                        {"Tank[0].v[0]", "7", "done", "ABbB", "7"},
                        {"Tank[0].v[2]", "7", "Index out of range", "ABbB", "Index out of range"}};
  for (const Case& c : cases) {
    TankList tanks;
    EXPECT_EQ(tanks.Write(c.path, c.value), c.outcome) << c.path;
    EXPECT_EQ(tanks.Names(), c.names) << c.path;
    EXPECT_EQ(tanks.Read(c.path), c.readBack) << c.path;
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
  struct Case {
    const char* path;
    const char* name;
    bool matches;
    const char* rest;  ///< the word behind
  };
  const Case cases[] = {{"iNTERSECT.Rest", "Intersect", true, "Rest"},
                        {"Intersect(Rest", "Intersect", true, "(Rest"},
                        {"Intersected.Rest", "Intersect", false, "Intersected"},
                        {"Inter.Rest", "Intersect", false, "Inter"},
                        {"Count.Rest", "$Count", true, "Rest"},
                        {"$Count.Rest", "$Count", true, "Rest"},
                        {"$$Count", "$Count", false, "$$Count"},
                        {"$Name", "Name", false, "$Name"}};
  for (const Case& c : cases) {
    TagParser parser = TagParser::ForCommand(c.path);
    EXPECT_EQ(parser.MatchWord(c.name), c.matches) << c.path;
    EXPECT_EQ(parser.NextWord(), c.rest) << c.path;
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
  struct Case {
    std::string path;
    int32_t index;
    std::string key;
    std::string rest = "W";
  };
  std::vector<Case> cases = {{"[007].W", 7, ""},
                             {"[99999999999].W", 2147483647, ""},
                             {"[{a]b}c d}].W", -1, "a]b}c d"},
                             {"[{}].W", -1, ""},
                             {"[{" + std::string(300, 'k') + "}].W", -1, std::string(255, 'k')},
                             {"W", -1, ""},
                             {"{a}", -1, "", "{a}"}};
  for (const char* broken :
       {"[", "[]", "[3", "[-3]", "[ 3]", "[3a]", "[{", "[{a", "[{a}", "[{a]", "[xa}]"}) {
    cases.push_back({broken, -1, "", ""});
  }
  for (const Case& c : cases) {
    TagParser parser = TagParser::ForCommand(c.path);
    EXPECT_EQ(parser.ParseIndex(), c.index) << c.path;
    EXPECT_EQ(parser.ParseKey(), c.key) << c.path;
    EXPECT_EQ(parser.NextWord(), c.rest) << c.path;
  }
}

TEST(TagParser, ReadsAnArrayOfExactlyTheNumbersAskedFor) {
  using Numbers = std::vector<double>;
  const std::pair<const char*, Numbers> arrays[] = {{"1|2.5|-3}", {1, 2.5, -3}},
                                                    {"1|2.5|-3", {1, 2.5, -3}},
                                                    {"1||x}", {1, 0, 0}},
                                                    {"1}2}3}}4", {1, 2, 3}}};
  Numbers target(3);
  std::string error;
  for (const auto& [value, numbers] : arrays) {
    EXPECT_TRUE(TagParser::ForWriting("V", value).ParseValueArray(target, error)) << value;
    EXPECT_EQ(target, numbers) << value;
  }
  const std::pair<const char*, const char*> refusals[] = {
      {"", "Badly formed value array string"},
      {"}1|2|3", "Too few elements in array"},
      {"1|2}", "Too few elements in array"},
      {"1|2|3|4}", "Too many elements in array"}};
  for (const auto& [value, reason] : refusals) {
    EXPECT_FALSE(TagParser::ForWriting("V", value).ParseValueArray(target, error)) << value;
    EXPECT_EQ(error, reason) << value;
  }
}

}  // namespace
}  // namespace gantry
