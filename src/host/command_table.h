#pragma once

#include <cstdint>

#include "gantry/records.h"

namespace gantry {

class CExtInterface;

/// What comes with a command of the host. Which of it a command reads, its row in the table says.
struct CommandArguments {
  void* window = nullptr;
  void* data = nullptr;
  uint32_t value = 0;
  ExtErrorBlock* err = nullptr;
};

/// Runs a numbered command of the host on its model. A number outside the table does nothing and
/// is answered with 0. A null model, or no record for a command that works on one, is answered
/// with 1 and a text.
int32_t RunCommand(uint32_t number, CExtInterface* model, const CommandArguments& arguments);

}  // namespace gantry
