#pragma once

#include <string>

#include "host/case_model.h"

namespace gantry::fieldrun {

/// Reads and checks a case file. Throws CaseError, which names the file and the line at fault.
CaseModel ReadCase(const std::string& path);

/// The checks that need more than one key: references between sections, keys that exclude or need
/// each other. Throws CaseError.
void CheckCase(const CaseModel& model);

}  // namespace gantry::fieldrun
