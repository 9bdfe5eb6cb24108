#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "client/connector_base.h"
#include "model/step_orders.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry {

/// The reservoir's side of a run: the wells as the simulator last told them and as the host wants
/// them, and the fluid. What talks to the simulator is called under the model's lock, and lets the
/// connector's exceptions through; the rest takes none.
///
/// Rates are in STB/d and MMscf/d, pressures in psig.
class Field {
 public:
  /// The fluid with the names of its components, and the list of wells, new.
  void ReadStatic(CExtConnectorBase& connector, std::vector<std::string>& componentNames);
  /// The state and the inflow of these wells. False when the simulator told of one that isn't in
  /// the list.
  bool ReadWells(CExtConnectorBase& connector, const std::vector<std::string>& wells);
  void SendOrders(CExtConnectorBase& connector, const StaticWellDataCollection& wells,
                  const StepRules& rules);
  /// Gives each connected gas injector its source, with a composition that each step replaces.
  static void SetUpGasInjection(CExtConnectorBase& connector, const StaticWellDataCollection& wells,
                                size_t componentCount);

  /// Fills the host's record with the inflow of a well as the simulator gave it.
  void FillInflow(const Source& source, _tGetSetData& record) const;
  /// Takes the host's operating point of a well.
  void TakeOperatingPoint(const _tGetSetData& record, Source& source) const;
  /// False when the host gets no record of this fluid.
  bool FillFluid(FluidModelRecord& record) const;

  SourceList Sources;  ///< positions are the handles of `GetIPR` and `SetOpPt`
  bool Compositional = false;
  EOSProperties FluidModel;

 private:
  std::unique_ptr<const FluidModelRecord> fluidRecord_;  ///< null where the host gets none
  std::vector<ConnectorWellRecord> wellRecords_;  ///< of the last read; only for their storage
  std::vector<size_t> sourceOfRecord_;            ///< where each record's well stands in `Sources`
  StepOrders orders_;                             ///< of the last step; only for their storage
};

}  // namespace gantry
