#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "described_toml/calendar.h"
#include "described_toml/quantity.h"

namespace gantry::toml_reader {

inline constexpr double kUnbounded = 1e300;

/// The numbers that a key takes, in field units, and within those the ones that can be meant: one
/// outside is warned of.
struct Range {
  double low = -kUnbounded;
  double high = kUnbounded;
  double usualLow = -kUnbounded;
  double usualHigh = kUnbounded;
};

/// What one key of a file may hold. Tables of these are the only description of the keys: by them a
/// file is read and checked, and its reference printed. Written as one row:
/// `Key("depth", "of the tubing", kLength).In({0, 40000}).Else(0)`.
struct Key {
 private:
  template <class Part>
  constexpr Key With(Part Key::*part, const Part& value) const {
    Key changed = *this;
    changed.*part = value;
    return changed;
  }

 public:
  constexpr Key(std::string_view keyName, std::string_view keyMeaning,
                Quantity measured = Quantity::kNone)
      : name(keyName), meaning(keyMeaning), quantity(measured) {}

  constexpr Key In(const Range& numbers) const { return With(&Key::range, numbers); }
  constexpr Key OneOf(std::string_view words) const { return With(&Key::choices, words); }
  /// What stands in when the key is missing, as the reference says.
  constexpr Key Else(std::string_view words) const { return With(&Key::fallback, words); }
  /// The number that stands in.
  constexpr Key Else(double number) const {
    return With(&Key::standard, std::optional<double>(number));
  }
  constexpr Key Needed() const { return With(&Key::isRequired, true); }
  /// Of the kinds of a thing, those that take the key, as bits.
  constexpr Key For(unsigned takers) const { return With(&Key::kinds, takers); }

  std::string_view name;
  std::string_view meaning;
  Quantity quantity;
  Range range;
  std::string_view choices;  ///< words divided by '|'; a choice is kept as its position
  std::string_view fallback;
  std::optional<double> standard;
  bool isRequired = false;
  unsigned kinds = ~0U;
};

/// A key and where it is kept. A key with a number as its target and with choices takes either; a
/// word stands for 0.
template <class Spec>
struct KeyRow {
  Key about;
  std::variant<std::string Spec::*, double Spec::*, int Spec::*, bool Spec::*,
               std::optional<double> Spec::*, std::optional<int> Spec::*,
               std::optional<Date> Spec::*, std::vector<double> Spec::*,
               std::vector<std::string> Spec::*>
      target;
};

template <class Spec>
using KeyTable = std::span<const KeyRow<Spec>>;

/// What a key takes, in the words of a reference and of a JSON schema.
struct ValueType {
  std::string_view word;
  std::string_view json;
  std::string_view format = "";
  bool isList = false;
};

template <class Value>
inline constexpr ValueType kTypeOf{};
template <>
inline constexpr ValueType kTypeOf<std::string>{"text", "string"};
template <>
inline constexpr ValueType kTypeOf<double>{"number", "number"};
template <>
inline constexpr ValueType kTypeOf<int>{"whole number", "integer"};
template <>
inline constexpr ValueType kTypeOf<bool>{"true or false", "boolean"};
template <>
inline constexpr ValueType kTypeOf<Date>{"date", "string", "date"};
template <class Value>
inline constexpr ValueType kTypeOf<std::optional<Value>> = kTypeOf<Value>;
template <class Value>
inline constexpr ValueType kTypeOf<std::vector<Value>>{kTypeOf<Value>.word, kTypeOf<Value>.json,
                                                       kTypeOf<Value>.format, true};

template <class Spec>
ValueType TypeOf(const KeyRow<Spec>& row) {
  return std::visit([]<class Value>(Value Spec::*) { return kTypeOf<Value>; }, row.target);
}

/// The names of the choices of a key, by position.
std::vector<std::string_view> SplitChoices(std::string_view choices);

}  // namespace gantry::toml_reader
