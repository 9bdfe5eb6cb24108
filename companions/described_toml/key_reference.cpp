#include "described_toml/key_reference.h"

#include <fmt/format.h>

namespace gantry::toml_reader {
namespace {

std::string ValueWord(const Key& about, const ValueType& type) {
  std::string word = type.isList ? fmt::format("list of {}s", type.word) : std::string(type.word);
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

}  // namespace

std::string KeyLines(const Key& about, const ValueType& type) {
  std::string text = fmt::format("  {:<26}{}\n", about.name, about.meaning);
  text += fmt::format("  {:<26}({}", "", ValueWord(about, type));
  if (about.isRequired) text += "; required";
  if (!about.fallback.empty()) text += fmt::format("; else {}", about.fallback);
  return text + ")\n";
}

}  // namespace gantry::toml_reader
