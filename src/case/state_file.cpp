#include "case/state_file.h"

#include <memory>

#include "platform/files.h"
#include "settings/case_archive.h"
#include "wells/exported_variables.h"

namespace gantry {

namespace {

constexpr int32_t kPresentVersion = 2;  // frozen: the one with the kind of a variable

void TransferAll(platform::NativeFile& file, CaseArchive::Direction direction,
                 const InflowStateTransfer& transferInflow, CExportedVariables& variables) {
  CaseArchive archive(file, direction);
  int32_t version = kPresentVersion;
  archive.Transfer(version);
  transferInflow(file.Handle());
  variables.Serialize(archive, version);
}

}  // namespace

void WriteStateFile(const std::string& path, const InflowStateTransfer& saveInflow,
                    CExportedVariables& variables) {
  if (path.empty()) return;
  const auto replacement = platform::ReplacementFile::Create(path);
  if (replacement == nullptr) return;
  try {
    TransferAll(replacement->File(), CaseArchive::Direction::kWrite, saveInflow, variables);
    replacement->Commit();
  } catch (const ArchiveError&) {
    return;
  }
}

bool ReadStateFile(const std::string& path, const InflowStateTransfer& loadInflow,
                   CExportedVariables& variables) {
  if (path.empty()) return true;
  const auto file = platform::NativeFile::OpenForReading(path);
  if (file == nullptr) return !platform::FileExists(path);
  if (file->Remaining() == 0) return true;
  CExportedVariables read;
  try {
    TransferAll(*file, CaseArchive::Direction::kRead, loadInflow, read);
  } catch (const ArchiveError&) {
    return false;
  }
  for (auto& parent : read) variables.Add(std::move(parent));
  return file->Remaining() == 0;
}

bool KeepStateFile(const std::string& path) {
  if (path.empty() || !platform::FileExists(path)) return true;
  constexpr int kMostCopies = 1000;
  std::string copy = path + ".backup";
  for (int i = 2; platform::FileExists(copy) && i <= kMostCopies; ++i) {
    copy = path + ".backup" + std::to_string(i);
  }
  return !platform::FileExists(copy) && platform::CopyFileOver(path, copy);
}

}  // namespace gantry
