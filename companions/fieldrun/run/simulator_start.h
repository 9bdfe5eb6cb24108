#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// Tells the model what the case says of its simulator, before anything is started.
/// `fallbackExecutable` is taken when the case names none.
void ApplySettings(DriverModel& model, const CaseModel& caseModel,
                   const std::string& fallbackExecutable);

/// Puts into this program's environment what a simulator of this machine may look for: the folder
/// of the results (GANTRY_RESULTS), since two runs of one dataset mustn't write to one place, and
/// the days of dated events (GANTRY_EVENT_DAYS), for one that stops only at times of its own, and
/// the days since its start at which it is to go on with an earlier run (GANTRY_RESUME).
void ShareWithSimulator(const CaseModel& caseModel, std::optional<double> resumeAt = std::nullopt);

/// Starts the simulator of the case. The module's text doesn't name the program that failed to come
/// up on this machine; it is added here.
void StartSimulator(DriverModel& model, const CaseModel& caseModel);

/// The program that runs the dataset, by its path, or the cluster that does. One that stands beside
/// this program is asked for its version.
std::string SimulatorProgram(DriverModel& model, const CaseModel& caseModel);

/// What a well of the simulator is, as the module says. An injector of no stated phase counts as a
/// water injector, since that is how the module controls it.
WellKind KindInSimulator(DriverModel& model, const DriverWell& well);

/// Brings the wells of the case and those of the simulator together. Throws CaseError, at the line
/// of the well, for a well that the simulator lacks or that is of another kind there.
std::vector<RunWell> MatchWells(DriverModel& model, const CaseModel& caseModel,
                                const std::vector<DriverWell>& simulatorWells);

/// Tells the module by which rate it is to hold a producer.
void SetControlMode(DriverModel& model, const WellSpec& well);

}  // namespace gantry::fieldrun
