#pragma once

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace gantry::test {

/// How an action failed: "length_error: its text"; "nothing raised" when it didn't. Kinds that only
/// derive from those named show as "exception".
template <class Action>
std::string Raised(Action action) {
  try {
    action();
  } catch (const std::exception& error) {
    const auto is = [&error](const std::type_info& type) { return typeid(error) == type; };
    const char* kind = is(typeid(std::length_error))       ? "length_error"
                       : is(typeid(std::invalid_argument)) ? "invalid_argument"
                       : is(typeid(std::logic_error))      ? "logic_error"
                       : is(typeid(std::runtime_error))    ? "runtime_error"
                                                           : "exception";
    return std::string(kind) + ": " + error.what();
  }
  return "nothing raised";
}

}  // namespace gantry::test
