#include <string>
#include <utility>

#include <fmt/format.h>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {
namespace {

std::string ValueWord(const Key& about, const toml_reader::ValueType& type) {
  std::string word = type.isList ? fmt::format("list of {}s", type.word) : std::string(type.word);
  const std::string_view field = UnitName(about.quantity, UnitSystem::kField);
  const std::string_view metric = UnitName(about.quantity, UnitSystem::kMetric);
  if (!field.empty()) {
    word += field == metric ? fmt::format(", {}", field) : fmt::format(", {} or {}", field, metric);
  }
  if (about.choices.empty()) return word;
  std::string choices;
  for (const std::string_view choice : toml_reader::SplitChoices(about.choices)) {
    choices += fmt::format("{}\"{}\"", choices.empty() ? "" : ", ", choice);
  }
  return about.quantity == Quantity::kNone ? choices : word + " or " + choices;
}

template <class Spec>
std::string KeyLines(KeyTable<Spec> table) {
  std::string text;
  for (const KeyRow<Spec>& row : table) {
    const Key& about = row.about;
    text += fmt::format("  {:<26}{}\n", about.name, about.meaning);
    text += fmt::format("  {:<26}({}", "", ValueWord(about, TypeOf(row)));
    if (about.isRequired) text += "; required";
    if (!about.fallback.empty()) text += fmt::format("; else {}", about.fallback);
    text += ")\n";
  }
  return text;
}

/// Names of keys, over as many lines as they need.
template <class Spec>
std::string Names(KeyTable<Spec> keys) {
  constexpr size_t kWidth = 90;
  std::string lines;
  std::string line = "   ";
  for (const KeyRow<Spec>& row : keys) {
    if (line.size() + row.about.name.size() > kWidth) lines += std::exchange(line, "   ") + "\n";
    line += fmt::format(" {}", row.about.name);
  }
  return lines + line + "\n";
}

template <class Spec>
std::string ChangeLines(KeyTable<Spec> /*keys*/) {
  return "";
}

std::string ChangeLines(KeyTable<EventSpec> /*keys*/) {
  return "  and new values: of a group\n" + Names(ChangesOfGroups()) +
         "  of wells, or those of a group\n" + Names(ChangesOfWells()) +
         "  of the field\n    manifold_pressure\n";
}

}  // namespace

std::string CaseReference() {
  std::string text;
  ForEachSection([&text](const auto& section) {
    const std::string heading =
        section.kIsList ? fmt::format("[[{}]]", section.name) : fmt::format("[{}]", section.name);
    text += fmt::format("{}{}  {}\n{}", text.empty() ? "" : "\n", heading, section.meaning,
                        KeyLines(section.keys) + ChangeLines(section.keys));
  });
  return text;
}

}  // namespace gantry::fieldrun
