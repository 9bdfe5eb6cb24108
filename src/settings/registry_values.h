#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

#include "platform/registry.h"

namespace gantry {

/// A value of the registry, and the field of an object that mirrors it.
template <class Object>
struct RegistryValue {
  const char* name;
  std::variant<std::string Object::*, int32_t Object::*> field;
};

/// A value that is missing or of another type leaves its field.
template <class Object, size_t N>
void ReadValues(platform::RegistryKey& key, const RegistryValue<Object> (&values)[N],
                Object& object) {
  for (const auto& [name, field] : values) {
    if (const auto* const text = std::get_if<std::string Object::*>(&field)) {
      if (auto read = key.ReadText(name)) object.** text = std::move(*read);
    } else if (const auto read = key.ReadNumber(name)) {
      object.*std::get<int32_t Object::*>(field) = static_cast<int32_t>(*read);
    }
  }
}

template <class Object, size_t N>
void WriteValues(platform::RegistryKey& key, const RegistryValue<Object> (&values)[N],
                 const Object& object) {
  for (const auto& [name, field] : values) {
    if (const auto* const text = std::get_if<std::string Object::*>(&field)) {
      key.WriteText(name, object.**text);
    } else {
      key.WriteNumber(name, static_cast<uint32_t>(object.*std::get<int32_t Object::*>(field)));
    }
  }
}

}  // namespace gantry
