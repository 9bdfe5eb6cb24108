// The case, its dataset and the file that keeps the model's state beside it.

#include <algorithm>

#include "case/case_data.h"
#include "case/state_file.h"
#include "model/ext_model.h"
#include "model/model_failure.h"
#include "platform/files.h"

namespace gantry {

int32_t CExtModel::SetDataFile(const SetDataFileRecord* record, ExtErrorBlock* /*err*/) {
  if (Settings.ConnectionMode == 0) Settings.FileName = record->path;
  return 0;
}

int32_t CExtModel::SetDataFolder(const char* folder, ExtErrorBlock* /*err*/) {
  PointAtFolder(folder, false);
  return 0;
}

void CExtModel::PointAtFolder(const std::string& folder, bool onlyIfThere) {
  const std::string name = folder + platform::kPathSeparator + Settings.GetCaseBaseName() + ".afi";
  if (!onlyIfThere || platform::FileExists(name)) Settings.FileName = name;
}

int32_t CExtModel::EnumDataFiles(EnumDataFilesRow* row, uint32_t /*value*/,
                                 ExtErrorBlock* /*err*/) {
  if (row->index != 0) return -1;
  const bool onCluster = Settings.ConnectionMode == 1;
  std::string options = FormatText("Linux|%s|Parallel|%d", onCluster ? "true" : "false",
                                   static_cast<int>(Settings.Parallel));
  if (onCluster) {
    options += FormatText("|HeadNode|%s|HeadNodePort|%d", Settings.HeadNode.c_str(),
                          static_cast<int>(Settings.HeadNodePort));
  }
  CopyBounded(row->path, Settings.FileName);
  CopyBounded(row->label, "Main simulator data file");
  row->isLocal = Settings.ConnectionMode == 0 ? 1 : 0;
  CopyBounded(row->options, options);
  return 0;
}

int32_t CExtModel::SetStoreFile(const char* path, bool load, ExtErrorBlock* /*err*/) {
  StoreFileName = path;
  holdsForeignState_ = false;
  if (!load) return 0;
  const auto loadInflow = [this](intptr_t file) { Inflow->LoadIPR(InflowHandle, file); };
  holdsForeignState_ = !ReadStateFile(StoreFileName, loadInflow, ExportedVariables);
  return 0;
}

int32_t CExtModel::SaveCaseData(char* buffer, uint32_t capacity, ExtErrorBlock* err) {
  if (WriteCaseData({buffer, capacity}, {Settings, Wells, ComponentNames}) !=
      CaseDataOutcome::kDone) {
    return Fail(err, "Failed in writing all case data - buffer overflow");
  }
  // Without a copy of what wasn't understood, the file stays as it is.
  if (holdsForeignState_ && !KeepStateFile(StoreFileName)) return 0;
  holdsForeignState_ = false;
  const auto saveInflow = [this](intptr_t file) { Inflow->SaveIPR(InflowHandle, file); };
  WriteStateFile(StoreFileName, saveInflow, ExportedVariables);
  return 0;
}

int32_t CExtModel::LoadCaseData(const CaseDataRecord* record, ExtErrorBlock* err) {
  CaseFileName = record->casePath == nullptr ? "" : record->casePath;
  const size_t length = std::min<size_t>(record->length, kCaseDataCapacity);
  char* const block = const_cast<char*>(record->block);  // only read from
  switch (ReadCaseData({block, length}, {Settings, Wells, ComponentNames})) {
    case CaseDataOutcome::kTooNew:
      return Fail(err, "Unable to read case data - version too new");
    case CaseDataOutcome::kFailed:
      return Fail(err, "Failed in reading all case data - buffer overflow");
    case CaseDataOutcome::kDone:
      break;
  }
  if (record->keepDatasetPath == 0) LookForMovedDataset();
  SkipNextStart = true;
  return 0;
}

void CExtModel::LookForMovedDataset() {
  if (Settings.ConnectionMode != 0 || platform::FileExists(Settings.FileName)) return;
  const size_t separator = CaseFileName.find_last_of(platform::kPathSeparator);
  if (separator != std::string::npos) PointAtFolder(CaseFileName.substr(0, separator), true);
}

}  // namespace gantry
