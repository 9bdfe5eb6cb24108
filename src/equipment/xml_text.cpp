#include "equipment/xml_text.h"

#include <array>
#include <utility>

namespace gantry {
namespace {

constexpr std::array<std::pair<char, std::string_view>, 5> kEntities = {
    {{'"', "&quot;"}, {'\'', "&apos;"}, {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}}};

void AppendEscaped(std::string& out, char c) {
  for (const auto& [character, entity] : kEntities) {
    if (c != character) continue;
    out += entity;
    return;
  }
  out += c;
}

}  // namespace

std::string EscapeXml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) AppendEscaped(out, c);
  return out;
}

}  // namespace gantry
