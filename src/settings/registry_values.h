#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "platform/registry.h"

namespace gantry {

/// A value of the registry, and the field of an object that mirrors it.
template <class Object>
struct RegistryValue {
  const char* name;
  std::variant<std::string Object::*, int32_t Object::*> field;
};

inline void ReadValue(platform::RegistryKey& key, const char* name, std::string& field) {
  if (auto text = key.ReadText(name)) field = std::move(*text);
}
inline void ReadValue(platform::RegistryKey& key, const char* name, int32_t& field) {
  if (const auto number = key.ReadNumber(name)) field = static_cast<int32_t>(*number);
}

/// A value that is missing or of another type leaves its field.
template <class Object, size_t N>
void ReadValues(platform::RegistryKey& key, const RegistryValue<Object> (&values)[N],
                Object& object) {
  for (const auto& value : values) {
    std::visit([&](auto field) { ReadValue(key, value.name, object.*field); }, value.field);
  }
}

inline void WriteValue(platform::RegistryKey& key, const char* name, const std::string& field) {
  key.WriteText(name, field);
}
inline void WriteValue(platform::RegistryKey& key, const char* name, int32_t field) {
  key.WriteNumber(name, static_cast<uint32_t>(field));
}

template <class Object, size_t N>
void WriteValues(platform::RegistryKey& key, const RegistryValue<Object> (&values)[N],
                 const Object& object) {
  for (const auto& value : values) {
    std::visit([&](auto field) { WriteValue(key, value.name, object.*field); }, value.field);
  }
}

}  // namespace gantry
