#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {
namespace {

using Json = nlohmann::ordered_json;

// What a key takes, by the type of its target.
Json TypeOf(const std::string& /*value*/) { return {{"type", "string"}}; }
Json TypeOf(double /*value*/) { return {{"type", "number"}}; }
Json TypeOf(int /*value*/) { return {{"type", "integer"}}; }
Json TypeOf(bool /*value*/) { return {{"type", "boolean"}}; }
Json TypeOf(const Date& /*value*/) { return {{"type", "string"}, {"format", "date"}}; }
template <class Value>
Json TypeOf(const std::optional<Value>& /*value*/) {
  return TypeOf(Value());
}
template <class Value>
Json TypeOf(const std::vector<Value>& /*value*/) {
  return {{"type", "array"}, {"items", TypeOf(Value())}};
}

std::string Description(const KeyDescription& about) {
  std::string text(about.meaning);
  const std::string_view field = UnitName(about.quantity, UnitSystem::kField);
  const std::string_view metric = UnitName(about.quantity, UnitSystem::kMetric);
  if (!field.empty()) text += fmt::format(" ({}, or {} in a metric case)", field, metric);
  if (!about.fallback.empty()) text += fmt::format("; else {}", about.fallback);
  return text;
}

/// Bounds are in field units, so that only numbers without a unit have theirs here.
void AddBounds(const KeyDescription& about, Json& type) {
  if (about.quantity != Quantity::kNone) return;
  Json& number = type["type"] == "array" ? type["items"] : type;
  if (about.low > KeyDescription().low) number["minimum"] = about.low;
  if (about.high < KeyDescription().high) number["maximum"] = about.high;
}

template <class Spec>
Json KeySchema(const KeyRow<Spec>& row) {
  const KeyDescription& about = row.about;
  const bool isWord = !about.choices.empty();
  const bool isNumberToo = std::holds_alternative<double Spec::*>(row.target);
  const Json words = {{"enum", SplitChoices(about.choices)}};
  Json type = std::visit([](auto member) { return TypeOf(Spec().*member); }, row.target);
  AddBounds(about, type);
  if (isWord) type = isNumberToo ? Json{{"anyOf", {type, words}}} : words;
  type["description"] = Description(about);
  return type;
}

template <class Spec>
Json SectionSchema(KeyTable<Spec> keys) {
  Json schema = {{"type", "object"}, {"additionalProperties", false}};
  for (const KeyRow<Spec>& row : keys) {
    schema["properties"][std::string(row.about.name)] = KeySchema(row);
    if (row.about.isRequired) schema["required"].push_back(row.about.name);
  }
  return schema;
}

}  // namespace

std::string CaseSchema() {
  Json schema = {{"$schema", "http://json-schema.org/draft-07/schema#"},
                 {"title", "Case of fieldrun"},
                 {"type", "object"},
                 {"additionalProperties", false},
                 {"required", {"simulator", "time"}}};
  ForEachSection([&schema](const SectionDescription& about, const auto& keys) {
    Json section = SectionSchema(keys);
    if (about.isList) section = {{"type", "array"}, {"items", section}};
    section["description"] = about.meaning;
    schema["properties"][std::string(about.name)] = section;
  });
  return schema.dump(2) + "\n";
}

}  // namespace gantry::fieldrun
