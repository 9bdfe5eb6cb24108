#include "fieldrun/case/shown_value.h"

#include <optional>
#include <variant>
#include <vector>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

/// Shows a value of any type that a key can have.
struct Shown {
  const Key& key;
  UnitSystem units;

  std::string operator()(double value) const {
    const std::string_view unit = UnitName(key.quantity, units);
    return fmt::format("{:.6g}{}{}", FromField(value, key.quantity, units), unit.empty() ? "" : " ",
                       unit);
  }
  std::string operator()(int value) const {
    const auto words = toml_reader::SplitChoices(key.choices);
    const auto place = static_cast<size_t>(value);
    return place < words.size() ? std::string(words[place]) : std::to_string(value);
  }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(const std::string& value) const { return value.empty() ? "none" : value; }
  std::string operator()(const Date& value) const { return ToText(value); }
  std::string operator()(const std::vector<double>& values) const {
    return values.empty() ? "none" : fmt::format("[{:.6g}]", fmt::join(values, ", "));
  }
  std::string operator()(const std::vector<std::string>& values) const {
    return fmt::format("[{}]", fmt::join(values, ", "));
  }
  template <class Value>
  std::string operator()(const std::optional<Value>& value) const {
    return value ? (*this)(*value) : "none";
  }
};

template <class Spec>
std::string ShownIn(const KeyRow<Spec>& row, const Spec& spec, UnitSystem units) {
  return std::visit([&](auto member) { return Shown{row.about, units}(spec.*member); }, row.target);
}

}  // namespace

std::string ShownValue(const KeyRow<WellSpec>& row, const WellSpec& spec, UnitSystem units) {
  return ShownIn(row, spec, units);
}

std::string ShownValue(const KeyRow<GroupSpec>& row, const GroupSpec& spec, UnitSystem units) {
  return ShownIn(row, spec, units);
}

}  // namespace gantry::fieldrun
