#pragma once

// How DriverModel makes one call of ExtCmd: shared by the source files of the class only.

#include <cstring>

#include <fmt/format.h>

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/driver/module_text.h"

namespace gantry::fieldrun {

/// The text of a fixed field, which has a terminator or fills the field.
template <size_t N>
std::string FieldText(const char (&field)[N]) {
  return TextOfModule(std::string(field, strnlen(field, N)));
}

template <class Arguments, class Outcome>
int32_t DriverModel::Call(ExtCommand command, void* data, uint32_t value, Arguments arguments,
                          Outcome outcome) {
  if (trace_ == nullptr) return CallGuarded(command, data, value);
  trace_->Begin("ExtCmd", fmt::format("{} {}, value={}, data={{{}}}", uint32_t{command},
                                      CommandName(command), value, arguments()));
  const int32_t result = CallGuarded(command, data, value);
  const std::string text = FieldText(error_.text);
  trace_->End(result, text.empty() ? outcome() : Quoted(text));
  return result;
}

template <class Arguments>
int32_t DriverModel::Call(ExtCommand command, void* data, uint32_t value, Arguments arguments) {
  return Call(command, data, value, arguments, [] { return std::string(); });
}

}  // namespace gantry::fieldrun
