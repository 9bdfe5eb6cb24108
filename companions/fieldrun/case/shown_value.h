#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {

/// A value of a key as a user reads it, with its unit: "500 Sm3/d", "gas", "none".
std::string ShownValue(const Key& key, double value, UnitSystem units);
std::string ShownValue(const Key& key, int value, UnitSystem units);
std::string ShownValue(const Key& key, bool value, UnitSystem units);
std::string ShownValue(const Key& key, const std::string& value, UnitSystem units);
std::string ShownValue(const Key& key, const Date& value, UnitSystem units);
std::string ShownValue(const Key& key, const std::vector<double>& values, UnitSystem units);
std::string ShownValue(const Key& key, const std::vector<std::string>& values, UnitSystem units);

template <class Value>
std::string ShownValue(const Key& key, const std::optional<Value>& value, UnitSystem units) {
  return value ? ShownValue(key, *value, units) : "none";
}

/// The value of a row's key.
template <class Spec>
std::string ShownValue(const KeyRow<Spec>& row, const Spec& spec, UnitSystem units) {
  return std::visit([&](auto member) { return ShownValue(row.about, spec.*member, units); },
                    row.target);
}

}  // namespace gantry::fieldrun
