#include <array>
#include <string>

#include <gtest/gtest.h>

#include "host/text/data_server_object.h"

namespace gantry {
namespace {

class Tank : public CExtDataServerObject {
 public:
  Tank() = default;
  explicit Tank(std::string name) : Name(std::move(name)) {}
  bool Handle(TagParser& parser, TagContext /*context*/) override {
    return parser.StringProperty(Name, "Name") || parser.IntProperty(Level, "Level");
  }
  const std::string& GetName() const override { return Name; }

  std::string Name;
  int32_t Level = 5;
};

class TankList : public CExcStdDataServerObjectList<Tank> {
 public:
  TankList() { Items = {Tank("A"), Tank("B"), Tank("b"), Tank("B")}; }
  std::string GetItemWord() const override { return "Tank"; }
};

TEST(ObjectList, AnswersAReadOfAnItemOrTheCount) {
  struct Case {
    std::string path;
    bool handled;
    std::string reply;
  };
  const Case cases[] = {
      {"Tank.$Count", true, "4"},
      {"TANK.count", true, "4"},
      {"Tank[0].Name", true, "A"},
      {"Tank[3].level", true, "5"},
      {"Tank[{b}].Name", true, "b"},
      {"Tank[{B}].Name", true, "B"},
      {"Tank[4].Name", false, ""},
      {"Tank[99999999999].Name", false, ""},
      {"Tank[{C}].Name", false, ""},
      {"Tank[{}].Name", false, ""},
      {"Tank[0].Other", false, ""},
      {"Tank", false, ""},
      {"Tank.Add", false, ""},
      {"Tank.Reset", false, ""},
      {"Vessel[0].Name", false, ""},
      {"Tank[0" + std::string(100000, '0') + "].Name", true, "A"},
      {"Tank" + std::string(100000, '.') + "Count", true, "4"},
      {"Tank" + std::string(100000, '['), false, ""},
      {"Tank[{" + std::string(100000, '}'), false, ""},
      {"Tank[{" + std::string(100000, 'B') + "}].Name", false, ""},
      {"Tank[0]." + std::string(100000, '\x01'), false, ""},
  };
  for (const Case& c : cases) {
    TankList tanks;
    std::array<char, 512> reply = {};
    TagParser parser = TagParser::ForReading(c.path, reply);
    const std::string shown = c.path.substr(0, 40);
    EXPECT_EQ(tanks.Handle(parser, false, nullptr, {}), c.handled) << shown;
    EXPECT_EQ(reply.data(), c.reply) << shown;
    EXPECT_EQ(parser.ErrorText, "") << shown;
    EXPECT_EQ(tanks.Items.size(), 4u) << shown;
  }
}

TEST(ObjectList, ChangesWithAWrite) {
  struct Case {
    const char* path;
    const char* value;
    bool handled;
    std::string names;  ///< left behind
  };
  const Case cases[] = {
      {"Tank.$Count", "9", true, "ABbB"},  {"Tank.Add", "", true, "ABbB."},
      {"Tank.Reset", "", true, ""},        {"Tank.Delete", "1", true, "AbB"},
      {"Tank.Delete", "3", true, "ABb"},   {"Tank[{B}].Name", "C", true, "ACbB"},
      {"Tank[2].Name", "C", true, "ABCB"}, {"Tank[4].Name", "C", false, "ABbB"},
  };
  for (const Case& c : cases) {
    TankList tanks;
    TagParser parser = TagParser::ForWriting(c.path, c.value);
    EXPECT_EQ(tanks.Handle(parser, false, nullptr, {}), c.handled) << c.path;
    EXPECT_EQ(parser.ErrorText, "") << c.path;
    std::string names;
    for (const Tank& tank : tanks.Items) names += tank.Name.empty() ? "." : tank.Name;
    EXPECT_EQ(names, c.names) << c.path << " = " << c.value;
  }
}

TEST(ObjectList, RefusesToRemoveAnItemThatItDoesNotHave) {
  for (const char* value : {"4", "-1", "99999999999"}) {
    TankList tanks;
    TagParser parser = TagParser::ForWriting("Tank.Delete", value);
    EXPECT_FALSE(tanks.Handle(parser, false, nullptr, {})) << value;
    EXPECT_EQ(parser.ErrorText, "Attempting to remove an object at an invalid index") << value;
    EXPECT_EQ(tanks.Items.size(), 4u) << value;
  }
}

TEST(ObjectList, GoesByTheWordItIsGiven) {
  TankList tanks;
  std::array<char, 512> reply = {};
  TagParser parser = TagParser::ForReading("Vessel.Count", reply);
  EXPECT_TRUE(tanks.Handle(parser, false, nullptr, "Vessel"));
  TagParser rest = TagParser::ForReading("[1].Level", reply);
  EXPECT_TRUE(tanks.HandleItems(rest, nullptr));
  EXPECT_STREQ(reply.data(), "5");
}

}  // namespace
}  // namespace gantry
