#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "text/data_server_object.h"

namespace gantry {

class CaseArchive;
class SourceList;

/// The control modes of a producer; any other code is controlled on liquid.
enum ControlMode : int32_t {
  kControlRate = 0,
  kControlCombined = 1,
  kControlLiquid = 2,
  kControlGas = 3
};

/// The small persistent record of a well: kept in the case data, between runs.
class StaticWellData : public CExtDataServerObject {
 public:
  bool Handle(TagParser& parser, TagContext context) override;
  const std::string& GetName() const override { return Name; }

  std::string Name;
  int32_t SourceType = 0;
  bool Connected = false;
  int32_t OpMode = 0;
};

class StaticWellDataCollection : public CExcStdDataServerObjectList<StaticWellData> {
 public:
  std::string GetItemWord() const override { return "StaticWell"; }

  /// As `Named`, with its place; -1 when there is none.
  StaticWellData* Find(const std::string& name, int32_t* index = nullptr);
  /// The mode of the last well, 0 without wells.
  int32_t OpMode() const;
  /// Gives every well the mode; -1 leaves them alone.
  void SetOpMode(int32_t opMode);
  std::vector<std::string> Names(bool connectedOnly) const;

  /// Rebuilds the list from the wells just read: only the mode of a well of the same name stays.
  void RebuildFrom(const SourceList& sources);
  void Serialize(CaseArchive& archive);
};

/// Compares the wells of a case with those just read from the simulator. None when they agree,
/// otherwise the message for the host.
std::optional<std::string> ReconcileWells(const StaticWellDataCollection& inFile,
                                          const StaticWellDataCollection& inSimulator);

}  // namespace gantry
