#include "described_toml/key_reference.h"

#include <fmt/format.h>

namespace gantry::toml_reader {
namespace {

/// "1 to 50", "from 1" or "at most 50".
std::string Bounds(double low, double high) {
  if (low == -kUnbounded) return fmt::format("at most {:g}", high);
  if (high == kUnbounded) return fmt::format("from {:g}", low);
  return fmt::format("{:g} to {:g}", low, high);
}

/// The numbers that a key takes, and those that it isn't warned of.
std::string Numbers(const Range& range, std::string_view unit) {
  std::string text;
  if (range.low != -kUnbounded || range.high != kUnbounded) {
    text += fmt::format(": {}{}", Bounds(range.low, range.high), unit);
  }
  if (range.usualLow != -kUnbounded || range.usualHigh != kUnbounded) {
    text += fmt::format("{} usually {}{}", text.empty() ? ':' : ',',
                        Bounds(range.usualLow, range.usualHigh), text.empty() ? unit : "");
  }
  return text;
}

std::string ValueWord(const Key& about, const ValueType& type) {
  std::string word = type.isList ? fmt::format("list of {}s", type.word) : std::string(type.word);
  const std::string_view field = UnitName(about.quantity, UnitSystem::kField);
  const std::string_view metric = UnitName(about.quantity, UnitSystem::kMetric);
  const bool isOneUnit = field == metric;
  if (!field.empty()) word += fmt::format(", {}", field);
  if (!isOneUnit) word += fmt::format(" or {}", metric);
  word += Numbers(about.range, isOneUnit ? "" : fmt::format(" {}", field));
  if (about.choices.empty()) return word;
  std::string choices;
  for (const std::string_view choice : SplitChoices(about.choices)) {
    choices += fmt::format("{}\"{}\"", choices.empty() ? "" : ", ", choice);
  }
  return about.quantity == Quantity::kNone ? choices : word + ", or " + choices;
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
