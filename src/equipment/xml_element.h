#pragma once

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace gantry {

class CXMLDocument;

/// One node of an XML tree, of whatever kind. Owns its children; a document owns the tree. Texts
/// are in the host's code page and become UTF-8 only when they are written. docs/equipment-xml.md
/// tells the writing rules, which are fixed to the byte.
class CXMLElement {
 public:
  enum : int32_t { kElement = 0, kAttribute = 1, kInstruction = 2, kComment = 3, kDocument = 4 };
  enum : int32_t { kText = 0, kBoolean = 2 };

  CXMLElement(int32_t type, std::string name, std::string value);
  CXMLElement(int32_t type, std::string name, bool value);

  /// The stamp of the document that the node stands in; empty outside one.
  virtual std::string GetDateStamp() const;
  virtual void SecondSlot() {}
  /// Writes the node with all below it.
  virtual void Write(std::ostream& out, CXMLDocument& document, bool indent) const;
  virtual CXMLElement& AddChild(std::unique_ptr<CXMLElement> child);
  virtual ~CXMLElement();

  /// A new node below this one: an element that is to hold children, one with a value, an
  /// attribute.
  CXMLElement& AddElement(std::string name, std::string value = {});
  CXMLElement& AddElement(std::string name, std::same_as<bool> auto value) {
    return AddChild(std::make_unique<CXMLElement>(kElement, std::move(name), value));
  }
  CXMLElement& AddAttribute(std::string name, std::string value);

  int32_t Type;
  int32_t ValueKind = kText;
  CXMLElement* Parent = nullptr;
  std::string Name;
  std::string Value;  ///< of an instruction or a comment: its body
  std::vector<std::unique_ptr<CXMLElement>> Children;
  std::vector<std::unique_ptr<CXMLElement>> Attributes;

 private:
  void WriteAttribute(std::ostream& out) const;
  void WriteElement(std::ostream& out, CXMLDocument& document, bool indent) const;
  void WriteAttributes(std::ostream& out, CXMLDocument& document) const;
  void WriteChildren(std::ostream& out, CXMLDocument& document, bool indent) const;
};

}  // namespace gantry
