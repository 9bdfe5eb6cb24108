#pragma once

#include <cstdint>
#include <string>

#include "text/data_server_object.h"

namespace gantry {

/// Where the simulator runs. Any other number counts as the cluster, but for what is shown.
enum ConnectionMode : int32_t { kLocalComputer = 0, kLinuxCluster = 1 };
/// What the inflow tables are drawn up for; any other number counts as block pressure.
enum InflowPressure : int32_t { kBlockPressure = 0, kDrainageRegion = 1 };

/// Everything that one case says about its simulator. One stands in each model, edited in place;
/// the application object holds one more. Reached by text under the word "CaseDetails".
class LinkSettings : public CExtDataServerObject {
 public:
  bool Handle(TagParser& parser, TagContext context) override;
  const std::string& GetName() const override;

  /// The dataset's directory with its closing separator: up to the last "/", or the last "\" if
  /// there is no "/". Empty when no separator stands after the first character.
  std::string GetCaseDirectory() const;
  /// The dataset's name without directory and extension.
  std::string GetCaseBaseName() const;
  std::string GetBackupFileName() const;
  std::string GetScriptFileName() const;

  /// Corrects a number of processors that no run can have.
  void ClampParallel();
  /// The last used values of this user. A missing value leaves its field; failures are ignored.
  void LoadFromRegistry();
  void SaveToRegistry() const;

  int32_t ConnectionMode = kLocalComputer;
  std::string HeadNode;
  int32_t HeadNodePort = 7777;
  int32_t LinuxIXVersion = 100000;
  std::string SimExeName;  ///< blank: the machine's default
  std::string FileName;    ///< path of the dataset
  int32_t Parallel = 1;
  bool CloseUnconnectedWells = false;
  int32_t IPRModel = kDrainageRegion;
  int32_t UpTimeMode = 0;  ///< kept only as a saved setting
  bool StdLogging = false;
};

}  // namespace gantry
