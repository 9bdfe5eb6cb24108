// The doors of the module beside the run: case block, published variables, description, dialogs.

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

#include "fieldrun/driver/command_trace.h"
#include "fieldrun/driver/driver_model.h"
#include "fieldrun/driver/module_text.h"

namespace gantry::fieldrun {

std::string DriverModel::SaveCase() {
  std::string block(EXT_CASE_DATA_CAPACITY, '\0');
  Require("save the case", EXT_SAVE_CASE_DATA, block.data(), EXT_CASE_DATA_CAPACITY);
  // Nothing in the block tells its length: all that was offered is kept.
  return block;
}

void DriverModel::LoadCase(const std::string& block, const std::string& casePath,
                           bool keepDatasetPath) {
  const auto record = std::make_unique<CaseDataRecord>();
  const size_t length = std::min(block.size(), sizeof record->block);
  std::memcpy(record->block, block.data(), length);
  record->length = static_cast<uint32_t>(length);
  record->casePath = casePath.c_str();
  record->keepDatasetPath = keepDatasetPath ? 1 : 0;
  Require("load the case", EXT_LOAD_CASE_DATA, record.get());
}

std::vector<PublishedVariable> DriverModel::PublishedVariables() {
  std::vector<PublishedVariable> variables;
  PublishedVariableRow row{};
  row.handle = -1;
  while (true) {
    const int32_t last = row.handle;
    const int32_t result = Call(EXT_ENUM_PUBLISHED_VARIABLES, &row);
    if (result != 0) return variables;
    if (row.handle <= last) Fail("list the published variables in order");
    variables.push_back({row.handle, row.isWriteable != 0, FieldText(row.fullName),
                         FieldText(row.wellName), FieldText(row.shortName), row.code});
  }
}

std::string DriverModel::ReadPublished(int handle) {
  EvalPublishedRequest request{};
  request.handle = handle;
  Require("read a published variable", EXT_EVAL_PUBLISHED_VARIABLES, &request);
  return FieldText(request.value);
}

void DriverModel::WritePublished(int handle, const std::string& value) {
  EvalPublishedRequest request{};
  request.handle = handle;
  request.isWrite = 1;
  if (value.size() >= sizeof request.value) throw DriverFailure("The value is too long");
  value.copy(request.value, value.size());
  Require("write a published variable", EXT_EVAL_PUBLISHED_VARIABLES, &request);
}

void DriverModel::DeletePublished(int handle) {
  Require("delete a published variable", EXT_DEL_PUBLISHED_VARIABLE, nullptr,
          static_cast<uint32_t>(handle));
}

void DriverModel::WriteEquipmentXml(const std::string& path, bool withVariables,
                                    const std::vector<std::string>& wells) {
  std::vector<std::string> moduleWells;
  moduleWells.reserve(wells.size());
  for (const std::string& well : wells) moduleWells.push_back(NameForModule(well));
  std::vector<const char*> names;
  names.reserve(wells.size() + 1);
  for (const std::string& well : moduleWells) names.push_back(well.c_str());
  names.push_back(nullptr);
  const uint32_t withoutVariables = withVariables ? 0 : 1;
  const std::string arguments = TraceFields("path", path, "flag", withoutVariables, "wells",
                                            fmt::format("{}", fmt::join(wells, ",")));
  const int32_t result = Traced(trace_, "ExtEquipXml", arguments, [&](std::string&) {
    return api_.ExtEquipXml(model_, path.c_str(), withoutVariables, names.data());
  });
  if (result != 0) throw DriverFailure("The module couldn't write the description " + path);
}

bool DriverModel::OpenDialog(ExtCommand command, void* window) {
  int32_t changed = 0;
  window_ = window;
  const int32_t result = Call(command, &changed);
  window_ = nullptr;
  // A refusal comes with a text; a dialog that was cancelled has none.
  if (result != 0 && !FieldText(error_.text).empty()) {
    Fail(fmt::format("open its dialog ({})", CommandName(command)));
  }
  return result == 0;
}

}  // namespace gantry::fieldrun
