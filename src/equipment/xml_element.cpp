#include "equipment/xml_element.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string_view>
#include <utility>

#include "equipment/xml_document.h"
#include "platform/text.h"

namespace gantry {
namespace {

constexpr size_t kAttributesOfLine = 4;
constexpr size_t kMostUnindentedAttributes = 5;

/// The characters that XML keeps for itself.
constexpr std::pair<char, std::string_view> kEntities[] = {
    {'"', "&quot;"}, {'\'', "&apos;"}, {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};

std::string EscapedAndEncoded(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    const auto* const entity = std::ranges::find(kEntities, c, [](auto& row) { return row.first; });
    entity == std::end(kEntities) ? escaped += c : escaped += entity->second;
  }
  return platform::CodePageToUtf8(escaped);
}

}  // namespace

CXMLElement::CXMLElement(int32_t type, std::string name, std::string value)
    : Type(type), Name(std::move(name)), Value(std::move(value)) {}

CXMLElement::CXMLElement(int32_t type, std::string name, bool value)
    : Type(type), ValueKind(kBoolean), Name(std::move(name)), Value(value ? "true" : "false") {}

CXMLElement::~CXMLElement() = default;

std::string CXMLElement::GetDateStamp() const {
  return Parent == nullptr ? std::string() : Parent->GetDateStamp();
}

CXMLElement& CXMLElement::AddChild(std::unique_ptr<CXMLElement> child) {
  child->Parent = this;
  auto& list = child->Type == kAttribute ? Attributes : Children;
  return *list.emplace_back(std::move(child));
}

CXMLElement& CXMLElement::AddElement(std::string name, std::string value) {
  return AddChild(std::make_unique<CXMLElement>(kElement, std::move(name), std::move(value)));
}

CXMLElement& CXMLElement::AddAttribute(std::string name, std::string value) {
  return AddChild(std::make_unique<CXMLElement>(kAttribute, std::move(name), std::move(value)));
}

void CXMLElement::Write(std::ostream& out, CXMLDocument& document, bool indent) const {
  if (indent) out << document.Indentation();
  switch (Type) {
    case kAttribute:
      return WriteAttribute(out);
    case kInstruction:
      out << "<?" << platform::CodePageToUtf8(Value) << "?>" << std::endl;
      return;
    case kComment:
      out << "<!-- " << platform::CodePageToUtf8(Value) << " -->" << std::endl;
      return;
    default:
      return WriteElement(out, document, indent);
  }
}

void CXMLElement::WriteAttribute(std::ostream& out) const {
  out << Name << "=\"" << (ValueKind == kText ? EscapedAndEncoded(Value) : Value) << '"';
}

void CXMLElement::WriteElement(std::ostream& out, CXMLDocument& document, bool indent) const {
  out << '<' << Name;
  if (!Children.empty()) ++document.Depth;
  WriteAttributes(out, document);
  if (Children.empty() && Value.empty()) {
    out << " />" << std::endl;
    return;
  }
  out << '>';
  if (!Children.empty()) WriteChildren(out, document, indent);
  out << EscapedAndEncoded(Value) << "</" << Name << '>' << std::endl;
}

void CXMLElement::WriteAttributes(std::ostream& out, CXMLDocument& document) const {
  const bool indent = Attributes.size() > kMostUnindentedAttributes;
  for (size_t i = 0; i < Attributes.size(); ++i) {
    if ((i + 1) % kAttributesOfLine == 0) {
      out << std::endl;
    } else {
      out << ' ';
    }
    Attributes[i]->Write(out, document, indent);
  }
}

void CXMLElement::WriteChildren(std::ostream& out, CXMLDocument& document, bool indent) const {
  out << std::endl;
  for (const auto& child : Children) child->Write(out, document, true);
  --document.Depth;
  if (indent) out << document.Indentation();
}

}  // namespace gantry
