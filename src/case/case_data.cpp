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

void TransferFlag(CaseArchive& archive, bool& flag) {
  uint8_t byte = flag ? 1 : 0;
  archive.Transfer(byte);
  flag = byte != 0;
}

/// A flag in the low byte of a number; the other bytes are written as 0 and not looked at.
void TransferWideFlag(CaseArchive& archive, bool& flag) {
  uint32_t word = flag ? 1 : 0;
  archive.Transfer(word);
  flag = (word & 0xFF) != 0;
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
  TransferFlag(archive, settings.CloseUnconnectedWells);
  archive.Transfer(settings.ConnectionMode);
  archive.Transfer(settings.IPRModel);
  archive.Transfer(settings.UpTimeMode);
  if (version >= kFirstWithComponents) {
    archive.TransferList(data.componentNames, [&](std::string& name) { archive.Transfer(name); });
  }
  if (version >= kFirstWithLogging) {
    TransferWideFlag(archive, settings.StdLogging);
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
