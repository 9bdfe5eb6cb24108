#include "equipment/xml_document.h"

#include <algorithm>
#include <fstream>
#include <memory>

#include "equipment/date_stamp.h"

namespace gantry {

CXMLDocument::CXMLDocument()
    : CXMLElement(kDocument, {}, std::string()), DateStamp(FormatDateStamp(PresentTime())) {
  CXMLElement::AddChild(std::make_unique<CXMLElement>(
      kInstruction, std::string(), std::string("xml version=\"1.0\" encoding=\"UTF-8\"")));
}

bool CXMLDocument::SaveToFile(const std::string& path, std::string& error) {
  std::ofstream file(path, std::ios::out | std::ios::trunc);
  if (!file.is_open()) {
    error = "Cannot write to file '" + path + "'";
    return false;
  }
  return WriteStream(file, false);
}

bool CXMLDocument::WriteStream(std::ostream& out, bool /*unused*/) {
  if (!out) return false;
  Depth = 0;
  for (const auto& child : Children) child->Write(out, *this, true);
  return out.good();
}

std::string_view CXMLDocument::Indentation() {
  if (IndentBuffer.front() == '\0') std::fill(IndentBuffer.begin(), IndentBuffer.end() - 1, '\t');
  return {IndentBuffer.data(), static_cast<size_t>(std::clamp(Depth, 0, kDeepestIndentation))};
}

}  // namespace gantry
