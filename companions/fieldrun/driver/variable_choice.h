#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"

namespace gantry::fieldrun {

/// A variable that the user wants published, as "WELL:LABEL"; the label, or the key, is one of the
/// catalogue of well variables.
struct VariableChoice {
  std::string well;
  std::string label;
};

/// Throws CommandLineError for a text of another form and for a label that no variable has.
VariableChoice ParseChoice(const std::string& text);

/// The host's code of a variable of the catalogue, by its key.
uint32_t CodeOfVariable(const std::string& key);

/// Publishes variables in a model. The module adds none by itself, but takes over those of a state
/// file: so its own state file is written to a scratch file, completed and read back. `storeFile`
/// is the model's own, which it keeps. A variable that is published already is left as it is.
void Publish(DriverModel& model, const std::vector<VariableChoice>& choices,
             const std::string& storeFile);

}  // namespace gantry::fieldrun
