#include "equipment/xml_document.h"

#include <functional>
#include <sstream>

#include <gtest/gtest.h>

#include "equipment/date_stamp.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

void AddAttributes(CXMLElement& element, int count) {
  for (int i = 1; i <= count; ++i) {
    element.AddAttribute("a" + std::to_string(i), std::to_string(i));
  }
}

TEST(XmlDocument, IsWrittenToTheByte) {
  struct Case {
    const char* what;
    std::function<void(CXMLElement&)> build;
    std::string expected;
  };
  const Case cases[] = {
      {"children, and a value behind them",
       [](CXMLElement& d) {
         CXMLElement& e = d.AddElement("E", "v");
         e.AddElement("C").AddElement("G", "g");
         e.AddElement("C");
       },
       "<E>\n\t<C>\n\t\t<G>g</G>\n\t</C>\n\t<C />\nv</E>\n"},
      {"what XML keeps for itself",
       [](CXMLElement& d) { d.AddElement("E", "<a> & 'b' \"c\"").AddAttribute("a", "\"&amp;\""); },
       "<E a=\"&quot;&amp;amp;&quot;\">&lt;a&gt; &amp; &apos;b&apos; &quot;c&quot;</E>\n"},
      {"characters of the host's code page",
       [](CXMLElement& d) { d.AddElement("E", "caf\xe9 \x80").AddAttribute("a", "\xfc"); },
       "<E a=\"\xc3\xbc\">caf\xc3\xa9 \xe2\x82\xac</E>\n"},
      {"four attributes",
       [](CXMLElement& d) { AddAttributes(d.AddElement("O").AddElement("E"), 4); },
       "<O>\n\t<E a1=\"1\" a2=\"2\" a3=\"3\"\na4=\"4\" />\n</O>\n"},
      {"six attributes on a child",
       [](CXMLElement& d) { AddAttributes(d.AddElement("O").AddElement("E"), 6); },
       "<O>\n\t<E \ta1=\"1\" \ta2=\"2\" \ta3=\"3\"\n\ta4=\"4\" \ta5=\"5\" \ta6=\"6\" />\n</O>\n"},
      {"six attributes on a parent",
       [](CXMLElement& d) {
         CXMLElement& e = d.AddElement("E");
         AddAttributes(e, 6);
         e.AddElement("C");
       },
       "<E \ta1=\"1\" \ta2=\"2\" \ta3=\"3\"\n\ta4=\"4\" \ta5=\"5\" \ta6=\"6\">\n\t<C />\n</E>\n"},
      {"a comment, a boolean attribute and a second instruction",
       [](CXMLElement& d) {
         d.AddChild(
             std::make_unique<CXMLElement>(CXMLElement::kComment, "", std::string("<\xe9>")));
         d.AddElement("E").AddChild(
             std::make_unique<CXMLElement>(CXMLElement::kAttribute, "on", true));
         d.AddChild(std::make_unique<CXMLElement>(CXMLElement::kInstruction, "",
                                                  std::string("go \"now\"")));
       },
       "<!-- <\xc3\xa9> -->\n<E on=\"true\" />\n<?go \"now\"?>\n"},
  };
  for (const Case& c : cases) {
    CXMLDocument document;
    c.build(document);
    std::ostringstream out;
    EXPECT_TRUE(document.WriteStream(out, false)) << c.what;
    EXPECT_EQ(out.str(), kHead + c.expected) << c.what;
  }
}

TEST(XmlDocument, IndentsNoDeeperThan128TabsThatItKeeps) {
  CXMLDocument document;
  EXPECT_EQ(document.IndentBuffer.front(), '\0') << "no tab is made before one is needed";
  CXMLElement* element = &document;
  for (int i = 0; i < 200; ++i) element = &element->AddElement("E");
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

TEST(XmlDocument, GivesItsStampToEveryNode) {
  CXMLDocument document;
  EXPECT_EQ(document.AddElement("E").AddElement("C").GetDateStamp(), document.DateStamp);
  EXPECT_NEAR(ReadDateStamp(document.DateStamp), PresentTime(), 1.0 / 24);
  EXPECT_EQ(CXMLElement(CXMLElement::kElement, "E", std::string()).GetDateStamp(), "");
}

TEST(DateStamp, CountsFromTheLastDayOf1899) {
  for (const auto& [days, stamp] : {std::pair{0.0, "1899-12-31T00:00:00.000Z"},
                                    {25569.0 - 1.0, "1970-01-01T00:00:00.000Z"},
                                    {36584.75, "2000-02-29T18:00:00.000Z"},
                                    {36584.0 + 3661.0 / 86400.0, "2000-02-29T01:01:01.000Z"},
                                    {-693594.0, "0001-01-01T00:00:00.000Z"}}) {
    EXPECT_EQ(FormatDateStamp(days), stamp);
    EXPECT_NEAR(ReadDateStamp(stamp), days, 1e-9) << stamp;
  }
  EXPECT_EQ(FormatDateStamp(-693595.0), "");
  EXPECT_EQ(FormatDateStamp(1e300), "");
  for (const char* bad : {"", "now", "2000-02-30T00:00:00.000Z", "2000-02-29T24:00:00.000Z",
                          "2000-02-29T00:60:00.000Z", "2000-02-29T00:00:60.000Z",
                          "2000-02-29T00:00:00Z", "20000-02-29T00:00:00.000Z"}) {
    EXPECT_EQ(ReadDateStamp(bad), 3.4e35) << bad;
  }
}

}  // namespace
}  // namespace gantry::test
