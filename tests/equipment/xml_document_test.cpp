#include "equipment/xml_document.h"

#include <sstream>

#include "equipment/date_stamp.h"
#include "support/cases.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

void AddAttributes(CXMLElement& element, int count) {
  for (int i = 1; i <= count; ++i) {
    element.AddAttribute("a" + std::to_string(i), std::to_string(i));
  }
}

void AddOther(CXMLElement& element, int32_t type, const std::string& value) {
  element.AddChild(std::make_unique<CXMLElement>(type, "", value));
}

TEST(XmlDocument, IsWrittenToTheByte) {
  CXMLDocument document;
  CXMLElement& valued = document.AddElement("Valued", "behind its children");
  valued.AddElement("Child").AddElement("Grandchild", "g");
  valued.AddElement("Child");
  document.AddElement("Kept", "<a> & 'b' \"c\"").AddAttribute("a", "\"&amp;\"");
  document.AddElement("CodePage", "caf\xe9 \x80").AddAttribute("a", "\xfc");
  AddAttributes(document.AddElement("Parent").AddElement("Four"), 4);
  AddAttributes(document.AddElement("Parent").AddElement("Five"), 5);
  AddAttributes(document.AddElement("Parent").AddElement("Six"), 6);
  CXMLElement& parent = document.AddElement("SixOfAParent");
  AddAttributes(parent, 6);
  parent.AddElement("Child");
  AddOther(document, CXMLElement::kComment, "<\xe9>");
  document.AddElement("Boolean").AddChild(
      std::make_unique<CXMLElement>(CXMLElement::kAttribute, "on", true));
  AddOther(document, CXMLElement::kInstruction, "go \"now\"");
  std::ostringstream out;
  EXPECT_TRUE(document.WriteStream(out, false));
  EXPECT_EQ(out.str(), TestFolder::Read(GANTRY_EQUIPMENT_GOLDEN "/shapes.xml"));
}

TEST(XmlDocument, IndentsNoDeeperThan128TabsThatItKeeps) {
  CXMLDocument document;
  EXPECT_EQ(document.IndentBuffer.front(), '\0') << "no tab is made before one is needed";
  CXMLElement* element = &document;
  for (int i = 0; i < 200; ++i) element = &element->AddElement("E");
  EXPECT_EQ(element->GetDateStamp(), document.DateStamp);
  std::ostringstream out;
  EXPECT_TRUE(document.WriteStream(out, false));
  for (const auto& [tabs, end] : {std::pair{127u, ">\n"}, {128u, " />\n"}}) {
    EXPECT_NE(out.str().find("\n" + std::string(tabs, '\t') + "<E" + end), std::string::npos);
  }
  EXPECT_EQ(out.str().find(std::string(129, '\t')), std::string::npos);
  EXPECT_EQ(document.IndentBuffer.data(), std::string(128, '\t'));
}

TEST(XmlDocument, TellsAFileThatItCannotOpenAndAStreamThatFails) {
  const TestFolder folder;
  CXMLDocument document;
  std::string error;
  const std::string path = (folder / "none").string() + "/out.xml";
  EXPECT_FALSE(document.SaveToFile(path, error));
  EXPECT_EQ(error, "Cannot write to file '" + path + "'");
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  EXPECT_FALSE(document.WriteStream(broken, false));
}

TEST(DateStamp, CountsFromTheLastDayOf1899) {
  EXPECT_NEAR(ReadDateStamp(CXMLDocument().DateStamp), PresentTime(), 1.0 / 24);
  EXPECT_EQ(CXMLElement(CXMLElement::kElement, "E", std::string()).GetDateStamp(), "");
  ExpectCases(GANTRY_EQUIPMENT_GOLDEN "/stamps.cases",
              {{"stamp",
                [](const Columns& c) {
                  EXPECT_NEAR(ReadDateStamp(c[1]), std::stod(c[0]), 1e-5);
                  return Columns{FormatDateStamp(std::stod(c[0]))};
                }},
               {"none", [](const Columns& c) { return Columns{FormatDateStamp(std::stod(c[0]))}; }},
               {"bad", [](const Columns& c) {
                  EXPECT_EQ(ReadDateStamp(c[0]), 3.4e35) << c[0];
                  return Columns{};
                }}});
}

}  // namespace
}  // namespace gantry::test
