#include "model/case.h"

#include <algorithm>

#include "case/case_data.h"
#include "case/state_file.h"
#include "model/inflow_model.h"
#include "model/model_failure.h"
#include "platform/files.h"

namespace gantry {

int32_t Case::SetDataFile(const char* path) {
  if (Settings.ConnectionMode == kLocalComputer) Settings.FileName = path;
  return 0;
}

int32_t Case::SetDataFolder(const std::string& folder) {
  PointAtFolder(folder, false);
  return 0;
}

void Case::PointAtFolder(const std::string& folder, bool onlyIfThere) {
  const std::string name = folder + platform::kPathSeparator + Settings.GetCaseBaseName() + ".afi";
  if (!onlyIfThere || platform::FileExists(name)) Settings.FileName = name;
}

int32_t Case::DescribeDataFile(EnumDataFilesRow& row) const {
  if (row.index != 0) return -1;
  const bool onCluster = Settings.ConnectionMode == kLinuxCluster;
  std::string options = FormatText("Linux|%s|Parallel|%d", onCluster ? "true" : "false",
                                   static_cast<int>(Settings.Parallel));
  if (onCluster) {
    options += FormatText("|HeadNode|%s|HeadNodePort|%d", Settings.HeadNode.c_str(),
                          static_cast<int>(Settings.HeadNodePort));
  }
  CopyBounded(row.path, Settings.FileName);
  CopyBounded(row.label, "Main simulator data file");
  row.isLocal = Settings.ConnectionMode == kLocalComputer ? 1 : 0;
  CopyBounded(row.options, options);
  return 0;
}

int32_t Case::SetStoreFile(const char* path, bool load, InflowModel& inflow,
                           CExportedVariables& variables) {
  storeFile_ = path;
  const auto loadInflow = [&](intptr_t file) { inflow.Load(file); };
  holdsForeignState_ = load && !ReadStateFile(storeFile_, loadInflow, variables);
  return 0;
}

int32_t Case::Save(char* buffer, uint32_t capacity, InflowModel& inflow,
                   CExportedVariables& variables, ExtErrorBlock* err) {
  if (WriteCaseData({buffer, capacity}, {Settings, Wells, ComponentNames}) !=
      CaseDataOutcome::kDone) {
    return Fail(err, "Failed in writing all case data - buffer overflow");
  }
  // Without a copy of what wasn't understood, the file stays as it is.
  if (holdsForeignState_ && !KeepStateFile(storeFile_)) return 0;
  holdsForeignState_ = false;
  WriteStateFile(
      storeFile_, [&](intptr_t file) { inflow.Save(file); }, variables);
  return 0;
}

int32_t Case::Load(const CaseDataRecord& record, ExtErrorBlock* err) {
  const size_t length = std::min<size_t>(record.length, kCaseDataCapacity);
  char* const block = const_cast<char*>(record.block);  // only read from
  switch (ReadCaseData({block, length}, {Settings, Wells, ComponentNames})) {
    case CaseDataOutcome::kTooNew:
      return Fail(err, "Unable to read case data - version too new");
    case CaseDataOutcome::kFailed:
      return Fail(err, "Failed in reading all case data - buffer overflow");
    case CaseDataOutcome::kDone:
      break;
  }
  const bool mayHaveMoved = record.keepDatasetPath == 0 && record.casePath != nullptr;
  if (mayHaveMoved) LookForMovedDataset(record.casePath);
  return 0;
}

void Case::LookForMovedDataset(const std::string& casePath) {
  const bool isLocal = Settings.ConnectionMode == kLocalComputer;
  if (!isLocal || platform::FileExists(Settings.FileName)) return;
  const size_t separator = casePath.find_last_of(platform::kPathSeparator);
  if (separator != std::string::npos) PointAtFolder(casePath.substr(0, separator), true);
}

int32_t Case::EnumWells(EnumSourcesRow& row, uint32_t mode) const {
  constexpr uint32_t kFirstOnly = 2;
  if (mode == kFirstOnly && row.index >= 0) return -1;
  const size_t next = row.index < 0 ? 0 : static_cast<size_t>(row.index) + 1;
  if (next >= Wells.Items.size()) return -1;
  const StaticWellData& well = Wells.Items[next];
  row.kind = well.SourceType == kProducer ? EXT_PRODUCER : EXT_INJECTOR;
  row.one1 = 1;
  row.one2 = 1;
  row.kindAgain = row.kind;
  row.zero = 0;
  row.one3 = 1;
  row.index = static_cast<int32_t>(next);
  CopyBounded(row.name, well.Name);
  CopyBounded(row.sourceWord, "source");
  return 0;
}

int32_t Case::SetConnection(int32_t well, bool connected, ExtErrorBlock* err) {
  StaticWellData* const found = Wells.At(well);
  if (found == nullptr) return Fail(err, "Handle passed to SetConnection() out of range");
  found->Connected = connected;
  return 0;
}

void Case::MarkConnected(bool allWells, const RunStartRecord& record) {
  for (StaticWellData& well : Wells.Items) well.Connected = allWells;
  if (allWells || record.connectedWells == nullptr) return;
  for (int32_t i = 0; i < record.connectedCount; ++i) {
    if (StaticWellData* const well = Wells.At(record.connectedWells[i])) well->Connected = true;
  }
}

}  // namespace gantry
