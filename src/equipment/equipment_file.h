#pragma once

#include <cstdint>
#include <string>

namespace gantry {

struct EquipmentModel;

/// Writes the description as an XML file over whatever stands at `path`. 0; 1 when the file can't
/// be opened. A write that fails half way isn't told.
int32_t WriteEquipmentFile(const EquipmentModel& equipment, const std::string& path);

}  // namespace gantry
