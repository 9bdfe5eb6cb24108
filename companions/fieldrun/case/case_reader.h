#pragma once

#include <string>
#include <vector>

#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

/// A case file as far as it could be read, with all that was found wrong or hard to believe, by
/// lines.
struct CheckedCase {
  CaseModel model;
  std::vector<Finding> findings;

  bool HasErrors() const;
};

/// Reads and checks a case file. Throws CaseError when there is none, or it can't be read.
CheckedCase ReadAndCheckCase(const std::string& path);

/// The same for a case that is to be run: its warnings stand in the model. Throws CaseError, which
/// tells every error with the file and the line.
CaseModel ReadCase(const std::string& path);

/// The checks that need more than one key: references between sections, keys that exclude or need
/// each other. Sections that are at fault themselves are passed over.
void CheckCase(const CaseModel& model, std::vector<Finding>& findings);

/// The same for its events: whom they are about, what they change, and whether two of one day
/// contradict each other.
void CheckEvents(const CaseModel& model, std::vector<Finding>& findings);

}  // namespace gantry::fieldrun
