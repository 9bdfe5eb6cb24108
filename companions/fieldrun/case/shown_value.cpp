#include "fieldrun/case/shown_value.h"

#include <fmt/format.h>

namespace gantry::fieldrun {

std::string ShownValue(const Key& key, double value, UnitSystem units) {
  const std::string_view unit = UnitName(key.quantity, units);
  return fmt::format("{:.6g}{}{}", FromField(value, key.quantity, units), unit.empty() ? "" : " ",
                     unit);
}

std::string ShownValue(const Key& key, int value, UnitSystem /*units*/) {
  const auto words = toml_reader::SplitChoices(key.choices);
  const auto place = static_cast<size_t>(value);
  return place < words.size() ? std::string(words[place]) : std::to_string(value);
}

std::string ShownValue(const Key& /*key*/, bool value, UnitSystem /*units*/) {
  return value ? "true" : "false";
}

std::string ShownValue(const Key& /*key*/, const std::string& value, UnitSystem /*units*/) {
  return value.empty() ? "none" : value;
}

std::string ShownValue(const Key& /*key*/, const Date& value, UnitSystem /*units*/) {
  return ToText(value);
}

std::string ShownValue(const Key& /*key*/, const std::vector<double>& values,
                       UnitSystem /*units*/) {
  return values.empty() ? "none" : fmt::format("[{:.6g}]", fmt::join(values, ", "));
}

std::string ShownValue(const Key& /*key*/, const std::vector<std::string>& values,
                       UnitSystem /*units*/) {
  return fmt::format("[{}]", fmt::join(values, ", "));
}

}  // namespace gantry::fieldrun
