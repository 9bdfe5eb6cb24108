#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "wells/exported_variables.h"
#include "wells/static_well_data.h"

namespace gantry {

/// The variables that the user publishes to the host, each of whose elements has a running number:
/// its handle. Results are those of the host's operations.
class PublishedVariables {
 public:
  using Notify = std::function<void(const std::string& notice)>;

  /// The row after the one that `row` names.
  int32_t Next(PublishedVariableRow& row, const std::vector<std::string>& components);
  /// Reads or writes one element, under the model's lock. A well that the host's network drives
  /// can't be set by hand; that is a notice, and no failure.
  int32_t Evaluate(EvalPublishedRequest& request, size_t componentCount,
                   CExtConnectorBase& connector, StaticWellDataCollection& wells,
                   const Notify& notify, ExtErrorBlock* err);
  int32_t Delete(int32_t handle, size_t componentCount, ExtErrorBlock* err);
  /// Takes out those of wells that aren't there any more, and with `componentsChanged` those that
  /// have an element for each component.
  void Prune(const StaticWellDataCollection& wells, bool componentsChanged);

  CExportedVariables List;
};

/// The paths of the variables that the host asks for by itself.
int32_t FillVariableNames(VariableNamesRecord& record);

}  // namespace gantry
