#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "settings/link_settings.h"
#include "wells/exported_variables.h"
#include "wells/static_well_data.h"

namespace gantry {

class InflowModel;

/// The lasting part of a model: its settings, its wells, and the files that keep them. Each belongs
/// to one model and outlives its runs. It changes only under the host's own calling order, and
/// takes no lock. Results are those of the host's operations.
class Case {
 public:
  int32_t SetDataFile(const char* path);
  int32_t SetDataFolder(const std::string& folder);
  int32_t DescribeDataFile(EnumDataFilesRow& row) const;

  /// The store file keeps the inflow model and the exported variables.
  int32_t SetStoreFile(const char* path, bool load, InflowModel& inflow,
                       CExportedVariables& variables);
  int32_t Save(char* buffer, uint32_t capacity, InflowModel& inflow, CExportedVariables& variables,
               ExtErrorBlock* err);
  int32_t Load(const CaseDataRecord& record, ExtErrorBlock* err);

  int32_t EnumWells(EnumSourcesRow& row, uint32_t mode) const;
  int32_t SetConnection(int32_t well, bool connected, ExtErrorBlock* err);
  /// All wells, or those that the record lists.
  void MarkConnected(bool allWells, const RunStartRecord& record);

  LinkSettings Settings;
  StaticWellDataCollection Wells;           ///< positions are the handles of `SetConnection`
  std::vector<std::string> ComponentNames;  ///< in the simulator's order; empty for black oil

 private:
  void PointAtFolder(const std::string& folder, bool onlyIfThere);
  void LookForMovedDataset(const std::string& casePath);

  std::string storeFile_;
  bool holdsForeignState_ = false;  ///< the store file holds what could not be read from it
};

}  // namespace gantry
