#include "case/case_data.h"

#include "platform/file_path.h"
#include "settings/case_archive.h"
#include "settings/link_settings.h"
#include "wells/static_well_data.h"

namespace gantry {

namespace {

// Frozen: the versions in which the fields came.
constexpr int32_t kPresentVersion = 4;
constexpr int32_t kFirstWithClusterVersion = 2;
constexpr int32_t kFirstWithComponents = 3;
constexpr int32_t kFirstWithLogging = 4;

/// A flag in the low byte of a number; other bytes are written as 0 and not looked at.
template <class Number>
void TransferFlag(CaseArchive& archive, bool& flag) {
  Number number = flag ? 1 : 0;
  archive.Transfer(number);
  flag = (number & 0xFF) != 0;
}

void TransferFileName(CaseArchive& archive, std::string& name) {
  std::string stored = platform::StoredFileName(name);
  archive.Transfer(stored);
  if (archive.IsReading()) name = platform::FileNameOfStored(stored);
}

/// The fields behind the version, in the order of the block, in the archive's direction.
void TransferFields(CaseArchive& archive, int32_t version, CaseData& data) {
  LinkSettings& settings = data.settings;
  TransferFileName(archive, settings.SimExeName);
  TransferFileName(archive, settings.FileName);
  archive.Transfer(settings.HeadNode);
  archive.Transfer(settings.HeadNodePort);
  if (version >= kFirstWithClusterVersion) archive.Transfer(settings.LinuxIXVersion);
  archive.Transfer(settings.Parallel);
  data.wells.Serialize(archive);
  TransferFlag<uint8_t>(archive, settings.CloseUnconnectedWells);
  archive.Transfer(settings.ConnectionMode);
  archive.Transfer(settings.IPRModel);
  archive.Transfer(settings.UpTimeMode);
  if (version >= kFirstWithComponents) {
    archive.TransferList(data.componentNames, [&](std::string& name) { archive.Transfer(name); });
  }
  if (version >= kFirstWithLogging) {
    TransferFlag<uint32_t>(archive, settings.StdLogging);
  } else {
    settings.StdLogging = false;
  }
}

CaseDataOutcome Transfer(std::span<char> block, CaseArchive::Direction direction, CaseData& data) {
  try {
    CaseArchive archive(block, direction);
    int32_t version = kPresentVersion;
    archive.Transfer(version);
    if (version > kPresentVersion) return CaseDataOutcome::kTooNew;
    TransferFields(archive, version, data);
    return CaseDataOutcome::kDone;
  } catch (const ArchiveError&) {
    return CaseDataOutcome::kFailed;
  }
}

}  // namespace

CaseDataOutcome WriteCaseData(std::span<char> block, CaseData data) {
  return Transfer(block, CaseArchive::Direction::kWrite, data);
}

CaseDataOutcome ReadCaseData(std::span<char> block, CaseData data) {
  return Transfer(block, CaseArchive::Direction::kRead, data);
}

}  // namespace gantry
