// The case, its dataset and the file that keeps the model's state beside it.

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

int32_t CExtModel::SetStoreFile(const char* path, bool /*load*/, ExtErrorBlock* /*err*/) {
  StoreFileName = path;
  return 0;
}

int32_t CExtModel::SaveCaseData(char* /*buffer*/, uint32_t /*capacity*/, ExtErrorBlock* err) {
  return Fail(err, "Failed in writing all case data - buffer overflow");
}

int32_t CExtModel::LoadCaseData(const CaseDataRecord* /*record*/, ExtErrorBlock* err) {
  return Fail(err, "Failed in reading all case data - buffer overflow");
}

}  // namespace gantry
