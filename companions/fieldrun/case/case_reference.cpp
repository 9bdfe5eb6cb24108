#include <array>
#include <string>

#include <fmt/format.h>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {
namespace {

// What a key takes, by the position of its target in the variant of KeyRow.
constexpr std::array<std::string_view, 9> kTargetWords{
    "text",         "number", "whole number",    "true or false", "number",
    "whole number", "date",   "list of numbers", "list of texts"};

std::string ValueWord(const KeyDescription& about, std::string_view targetWord) {
  std::string word{targetWord};
  const std::string_view field = UnitName(about.quantity, UnitSystem::kField);
  const std::string_view metric = UnitName(about.quantity, UnitSystem::kMetric);
  if (!field.empty()) {
    word += field == metric ? fmt::format(", {}", field) : fmt::format(", {} or {}", field, metric);
  }
  if (about.choices.empty()) return word;
  std::string choices;
  for (const std::string_view choice : SplitChoices(about.choices)) {
    choices += fmt::format("{}\"{}\"", choices.empty() ? "" : ", ", choice);
  }
  return about.quantity == Quantity::kNone ? choices : word + " or " + choices;
}

template <class Spec>
std::string KeyLines(KeyTable<Spec> table) {
  std::string text;
  for (const KeyRow<Spec>& row : table) {
    const KeyDescription& about = row.about;
    text += fmt::format("  {:<26}{}\n", about.name, about.meaning);
    text += fmt::format("  {:<26}({}", "", ValueWord(about, kTargetWords[row.target.index()]));
    if (about.isRequired) text += "; required";
    if (!about.fallback.empty()) text += fmt::format("; else {}", about.fallback);
    text += ")\n";
  }
  return text;
}

}  // namespace

std::string CaseReference() {
  std::string text;
  ForEachSection([&text](const SectionDescription& section, const auto& keys) {
    const std::string heading =
        section.isList ? fmt::format("[[{}]]", section.name) : fmt::format("[{}]", section.name);
    text += fmt::format("{}{}  {}\n{}", text.empty() ? "" : "\n", heading, section.meaning,
                        KeyLines(keys));
  });
  return text;
}

}  // namespace gantry::fieldrun
