#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {
namespace {

using Json = nlohmann::ordered_json;

Json TypeOf(const toml_reader::ValueType& about) {
  Json type = {{"type", about.json}};
  if (!about.format.empty()) type["format"] = about.format;
  return about.isList ? Json{{"type", "array"}, {"items", type}} : type;
}

std::string Description(const Key& about) {
  std::string text(about.meaning);
  const std::string_view field = UnitName(about.quantity, UnitSystem::kField);
  const std::string_view metric = UnitName(about.quantity, UnitSystem::kMetric);
  if (!field.empty()) text += fmt::format(" ({}, or {} in a metric case)", field, metric);
  if (!about.fallback.empty()) text += fmt::format("; else {}", about.fallback);
  return text;
}

/// Bounds are in field units, so that only numbers without a unit have theirs here.
void AddBounds(const Key& about, Json& type) {
  if (about.quantity != Quantity::kNone) return;
  Json& number = type["type"] == "array" ? type["items"] : type;
  if (about.range.low > Range().low) number["minimum"] = about.range.low;
  if (about.range.high < Range().high) number["maximum"] = about.range.high;
}

template <class Spec>
Json KeySchema(const KeyRow<Spec>& row) {
  const Key& about = row.about;
  const bool isWord = !about.choices.empty();
  const bool isNumberToo = std::holds_alternative<double Spec::*>(row.target);
  const Json words = {{"enum", toml_reader::SplitChoices(about.choices)}};
  Json type = TypeOf(toml_reader::TypeOf(row));
  AddBounds(about, type);
  if (isWord) type = isNumberToo ? Json{{"anyOf", {type, words}}} : words;
  type["description"] = Description(about);
  return type;
}

template <class Spec>
void AddKeys(KeyTable<Spec> keys, Json& schema) {
  for (const KeyRow<Spec>& row : keys) {
    schema["properties"][std::string(row.about.name)] = KeySchema(row);
    if (row.about.isRequired) schema["required"].push_back(row.about.name);
  }
}

template <class Spec>
Json SectionSchema(KeyTable<Spec> keys) {
  Json schema = {{"type", "object"}, {"additionalProperties", false}};
  AddKeys(keys, schema);
  if constexpr (std::is_same_v<Spec, EventSpec>) {
    AddKeys(ChangesOfWells(), schema);
    AddKeys(ChangesOfGroups(), schema);
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
  ForEachSection([&schema](const auto& about) {
    Json section = SectionSchema(about.keys);
    if (about.kIsList) section = {{"type", "array"}, {"items", section}};
    section["description"] = about.meaning;
    schema["properties"][std::string(about.name)] = section;
  });
  return schema.dump(2) + "\n";
}

}  // namespace gantry::fieldrun
