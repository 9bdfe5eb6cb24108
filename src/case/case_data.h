#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace gantry {

class LinkSettings;
class StaticWellDataCollection;

/// The lasting part of a model, as one case keeps it in the block of memory that the host saves and
/// gives back. docs/case-data.md shows the block.
struct CaseData {
  LinkSettings& settings;
  StaticWellDataCollection& wells;
  std::vector<std::string>& componentNames;
};

/// What became of a transfer; the words for the host are its caller's.
enum class CaseDataOutcome : int32_t {
  kDone,
  kTooNew,  ///< written by a later version of the driver; nothing was changed
  kFailed,  ///< the block is too small, or isn't one; what was read till then stays
};

/// Writes the present version.
CaseDataOutcome WriteCaseData(std::span<char> block, CaseData data);

/// Reads any version up to the present one, straight into the live objects: wells and component
/// names are appended, and a field that the version doesn't have keeps its value, except
/// `StdLogging`, which is then off.
CaseDataOutcome ReadCaseData(std::span<char> block, CaseData data);

}  // namespace gantry
