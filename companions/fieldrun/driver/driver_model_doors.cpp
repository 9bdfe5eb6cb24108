// The doors of the module beside the run: case block, published variables, description, dialogs.

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/driver/driver_model_call.h"

namespace gantry::fieldrun {

std::string DriverModel::SaveCase() {
  std::string block(EXT_CASE_DATA_CAPACITY, '\0');
  const int32_t result =
      Call(EXT_SAVE_CASE_DATA, block.data(), EXT_CASE_DATA_CAPACITY, [] { return std::string(); });
  if (result != 0) Fail("save the case");
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
  const int32_t result = Call(EXT_LOAD_CASE_DATA, record.get(), 0, [&] {
    return TraceText()
        .Add("length", static_cast<int32_t>(length))
        .Add("casePath", casePath)
        .Add("keepDatasetPath", int32_t{keepDatasetPath})
        .Text();
  });
  if (result != 0) Fail("load the case");
}

std::vector<PublishedVariable> DriverModel::PublishedVariables() {
  std::vector<PublishedVariable> variables;
  PublishedVariableRow row{};
  row.handle = -1;
  while (true) {
    const int32_t last = row.handle;
    const int32_t result = Call(
        EXT_ENUM_PUBLISHED_VARIABLES, &row, 0,
        [&] { return TraceText().Add("handle", last).Text(); },
        [&] { return TraceText().Add("name", FieldText(row.fullName)).Text(); });
    if (result != 0) return variables;
    if (row.handle <= last) Fail("list the published variables in order");
    variables.push_back({row.handle, row.isWriteable != 0, FieldText(row.fullName),
                         FieldText(row.wellName), FieldText(row.shortName), row.code});
  }
}

std::string DriverModel::ReadPublished(int handle) {
  EvalPublishedRequest request{};
  request.handle = handle;
  const int32_t result = Call(
      EXT_EVAL_PUBLISHED_VARIABLES, &request, 0,
      [&] { return TraceText().Add("handle", handle).Text(); },
      [&] { return Quoted(FieldText(request.value)); });
  if (result != 0) Fail("read a published variable");
  return FieldText(request.value);
}

void DriverModel::WritePublished(int handle, const std::string& value) {
  EvalPublishedRequest request{};
  request.handle = handle;
  request.isWrite = 1;
  if (value.size() >= sizeof request.value) throw DriverFailure("The value is too long");
  value.copy(request.value, value.size());
  const int32_t result = Call(EXT_EVAL_PUBLISHED_VARIABLES, &request, 0, [&] {
    return TraceText().Add("handle", handle).Add("value", std::string_view(value)).Text();
  });
  if (result != 0) Fail("write a published variable");
}

void DriverModel::DeletePublished(int handle) {
  const int32_t result = Call(EXT_DEL_PUBLISHED_VARIABLE, nullptr, static_cast<uint32_t>(handle),
                              [] { return std::string(); });
  if (result != 0) Fail("delete a published variable");
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
  if (trace_ != nullptr) {
    trace_->Begin("ExtEquipXml", TraceText()
                                     .Add("path", path)
                                     .Add("flag", static_cast<int32_t>(withoutVariables))
                                     .Add("wells", fmt::format("{}", fmt::join(wells, ",")))
                                     .Text());
  }
  const int32_t result = api_.ExtEquipXml(model_, path.c_str(), withoutVariables, names.data());
  if (trace_ != nullptr) trace_->End(result, "");
  if (result != 0) throw DriverFailure("The module couldn't write the description " + path);
}

bool DriverModel::OpenDialog(ExtCommand command, void* window) {
  int32_t changed = 0;
  window_ = window;
  const int32_t result = Call(command, &changed, 0, [] { return std::string(); });
  window_ = nullptr;
  // A refusal comes with a text; a dialog that was cancelled has none.
  if (result != 0 && !FieldText(error_.text).empty()) {
    Fail(fmt::format("open its dialog ({})", CommandName(command)));
  }
  return result == 0;
}

}  // namespace gantry::fieldrun
