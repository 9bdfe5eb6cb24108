// Texts of the host in the XML description. Written, a text means the same and holds none of XML's
// own characters; a date that was written reads back.
// Reads: src/equipment/xml_element.cpp src/equipment/xml_document.cpp
// Reads: src/equipment/date_stamp.cpp

#include "equipment/date_stamp.h"
#include "equipment/xml_document.h"
#include "platform/text.h"
#include "target.h"

using namespace gantry;
using namespace gantry::fuzz;

namespace {

std::string Unescaped(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    plain += TakeUpTo('&', text);
    if (text.empty()) break;
    const std::string_view entity = TakeUpTo(';', text);
    plain += entity == "quot"   ? '"'
             : entity == "apos" ? '\''
             : entity == "lt"   ? '<'
             : entity == "gt"   ? '>'
                                : '&';
    Require(plain.back() != '&' || entity == "amp");
  }
  return plain;
}

void CheckDate(const std::string& text) {
  const double days = ReadDateStamp(text);
  const std::string stamp = FormatDateStamp(days);
  if (!stamp.empty()) Require(std::abs(ReadDateStamp(stamp) - days) < 2.0 / 86400.0);
}

std::string Written(CXMLDocument& document) {
  std::ostringstream out;
  Require(document.WriteStream(out, false));
  return out.str();
}

/// A tree in the shape of the input: of each line the first letter tells what it becomes.
void Build(CXMLDocument& document, std::string_view input) {
  CXMLElement* place = &document;
  while (!input.empty()) {
    const uint8_t kind = TakeByte(input) % 6;
    const std::string value(TakeUpTo('\n', input));
    if (kind == 0) place = &place->AddElement("node");
    if (kind == 1) place->AddElement("leaf", value);
    if (kind == 2) place->AddAttribute("name", value);
    if (kind == 3) place->AddElement("flag", value.empty());
    if (kind == 4 && place->Parent != nullptr) place = place->Parent;
    if (kind == 5) {
      place->AddChild(std::make_unique<CXMLElement>(CXMLElement::kComment, "", value));
    }
  }
}

}  // namespace

FUZZ_TARGET(xml_text) {
  const std::string text(input);
  CheckDate(text);
  CXMLDocument plain;
  plain.AddElement("t", text);
  std::string written = Written(plain);
  if (const size_t begin = written.find("<t>"); begin != std::string::npos) {
    written = written.substr(begin + 3, written.rfind("</t>") - begin - 3);
    Require(written.find_first_of("<>\"'") == std::string::npos);
    Require(Unescaped(written) == platform::CodePageToUtf8(text));
  }
  CXMLDocument document;
  Build(document, input);
  Written(document);
}
