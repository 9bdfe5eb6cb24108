#pragma once

#include <string>

namespace gantry {

/// In a job slot of a batch scheduler, copies the dataset to a name of the slot's own, so that jobs
/// on shared storage don't fight over one file, and returns that name. Returns `fileName` outside a
/// slot, and where the copy fails, which is no error.
std::string DatasetForJobSlot(const std::string& fileName);

}  // namespace gantry
