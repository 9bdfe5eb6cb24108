#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "equipment/xml_element.h"

namespace gantry {

/// Deeper elements are indented no further.
inline constexpr int32_t kDeepestIndentation = 128;

/// An XML tree with its instruction at the head, and its way to a stream or a file.
class CXMLDocument : public CXMLElement {
 public:
  CXMLDocument();

  std::string GetDateStamp() const override { return DateStamp; }
  virtual void FifthSlot() {}
  virtual void SixthSlot() {}
  /// False with a text when the file can't be written, false without one when a write failed.
  virtual bool SaveToFile(const std::string& path, std::string& error);
  virtual bool WriteStream(std::ostream& out, bool unused);

  /// As many tabs as the present depth asks for.
  std::string_view Indentation();

  std::string DateStamp;                                        ///< when the document was made
  int32_t Depth = 0;                                            ///< during a write
  std::array<char, kDeepestIndentation + 1> IndentBuffer = {};  ///< tabs, once one is asked for
  bool UseSchemaPath = false;
  std::string SchemaPath;  ///< this driver sets none
};

}  // namespace gantry
