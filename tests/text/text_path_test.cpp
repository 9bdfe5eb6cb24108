// Text paths: words, properties of every kind, lists, the arrays in a value, and commands. What
// comes of one stands in paths.cases.

#include <array>
#include <memory>

#include "support/cases.h"
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

  std::string Read(const std::string& path) {
    std::array<char, 512> reply = {};
    TagParser parser = TagParser::ForReading(path, reply);
    const bool isHandled = Handle(parser, false, nullptr, {});
    return isHandled ? reply.data() : Failure(parser);
  }
  std::string Write(const std::string& path, const std::string& value) {
    TagParser parser = TagParser::ForWriting(path, value.empty() ? nullptr : value.c_str());
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

/// A command "Go" with so many arguments: what is wrong with it, and each argument as its kind and
/// its text, such as "3:100 1:a b", with its numbers behind that where they are asked for.
Columns Go(const std::string& text, int32_t least, int32_t most, bool withNumbers = false) {
  CExtDataServerCmdArgumentCollection arguments;
  TagParser parser = TagParser::ForCommand(text);
  const bool isMatched =
      parser.MatchCommand("Go", arguments, least, most) == CommandMatch::kMatched;
  EXPECT_EQ(isMatched, parser.ErrorText.empty());
  EXPECT_LE(arguments.Size(), static_cast<size_t>(most));
  std::string shown;
  for (const auto& argument : arguments) {
    shown += (shown.empty() ? "" : " ") + std::to_string(argument->Kind) + ":" + argument->Text;
    if (!withNumbers) continue;
    shown +=
        "=" + FormatDouble(argument->NumberValue) + "=" + FormatInteger(argument->IntegerValue);
  }
  return {isMatched ? shown : parser.ErrorText};
}

const Kinds kKinds = {
    {"read",
     [](const Columns& c) {
       TankList tanks;
       const std::string value = tanks.Read(c[0]);
       EXPECT_EQ(tanks.Names(), "ABbB");
       return Columns{value};
     }},
    {"write",
     [](const Columns& c) {
       TankList tanks;
       const std::string outcome = tanks.Write(c[0], c[1]);
       return Columns{outcome, tanks.Names(), tanks.Read(c[0])};
     }},
    {"word",
     [](const Columns& c) {
       TagParser parser = TagParser::ForCommand(c[0]);
       const bool isThere = parser.MatchWord(c[1]);
       return Columns{isThere ? "yes" : "no", parser.NextWord()};
     }},
    {"index",
     [](const Columns& c) {
       TagParser parser = TagParser::ForCommand(c[0]);
       const std::string index = std::to_string(parser.ParseIndex());
       const std::string key = parser.ParseKey();
       return Columns{index, key, parser.NextWord()};
     }},
    {"array",
     [](const Columns& c) {
       std::array<double, 3> numbers{};
       std::string outcome;
       if (TagParser::ForWriting("V", c[0].c_str()).ParseValueArray(numbers, outcome)) {
         for (const double number : numbers) outcome += FormatDouble(number) + " ";
         outcome.pop_back();
       }
       return Columns{outcome};
     }},
    {"command", [](const Columns& c) { return Go(c[0], 0, 9); }},
    {"numbers", [](const Columns& c) { return Go(c[0], 3, 3, true); }},
    {"refused", [](const Columns& c) { return Go(c[0], 1, 2); }}};

TEST(TextPaths, LeadWhereTheCasesSay) { ExpectCases(GANTRY_PATH_CASES, kKinds); }

TEST(TextPaths, GoByTheWordThatTheirListIsGiven) {
  TankList tanks;
  std::array<char, 512> reply = {};
  TagParser parser = TagParser::ForReading("Vessel.Count", reply);
  EXPECT_TRUE(tanks.Handle(parser, false, nullptr, "Vessel"));
  TagParser rest = TagParser::ForReading("[1].Small", reply);
  EXPECT_TRUE(tanks.HandleItems(rest, nullptr));
  EXPECT_STREQ(reply.data(), "9");
}

TEST(TextPaths, ChangeNothingBehindAReadOnlyNameOrForACommand) {
  int32_t number = 1;
  TagParser parser = TagParser::ForWriting("$N.M", "5");
  EXPECT_TRUE(parser.IntProperty(number, "$N"));
  EXPECT_TRUE(parser.IntProperty(number, "M"));
  EXPECT_TRUE(TagParser::ForCommand("N").IntProperty(number, "N"));
  EXPECT_EQ(number, 1);
}

TEST(TextPaths, HaveTheirReplyCutToItsFieldOrRoomMadeForAllOfIt) {
  std::array<char, 16> field;
  field.fill('#');
  std::string text(100000, 't');
  EXPECT_TRUE(TagParser::ForReading("T", std::span(field).first(8)).StringProperty(text, "T"));
  EXPECT_EQ(std::string(field.data(), 9), std::string("ttttttt\0#", 9));
  std::unique_ptr<char[]> reply;
  EXPECT_TRUE(TagParser::ForAllocatedReply("T", reply).StringProperty(text, "T"));
  EXPECT_EQ(reply.get(), text);
}

TEST(TextPaths, LeaveAnotherCommandToTheNextTest) {
  CExtDataServerCmdArgumentCollection arguments;
  TagParser parser = TagParser::ForCommand("Intersect.Stop(1)");
  EXPECT_TRUE(parser.MatchWord("Intersect"));
  EXPECT_EQ(parser.MatchCommand("Start", arguments, 0, 0), CommandMatch::kOther);
  EXPECT_EQ(parser.ErrorText, "");
  EXPECT_EQ(parser.MatchCommand("STOP", arguments, 1, 1), CommandMatch::kMatched);
  EXPECT_EQ(parser.MatchCommand("", arguments, 0, 0), CommandMatch::kMatched);
  EXPECT_TRUE(arguments.IsEmpty());
}

}  // namespace
}  // namespace gantry::test
