#pragma once

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/results/json_text.h"
#include "fieldrun/results/resume_file.h"
#include "fieldrun/results/run_file.h"
#include "fieldrun/verbs/options.h"

namespace gantry::fieldrun {

/// What every verb works with: the command line, the loaded module and the trace, if one is kept.
struct Session {
  const Options& options;
  const ModuleApi& api;
  CallTrace* trace;
};

/// Does what the command line says. The exit status: 0 done, 1 the module failed, 2 the case file
/// or the command line is at fault, 3 the user ended the run. Tells faults on standard error.
int RunVerb(const Options& options);

void RunCase(const Session& session);
void ResumeCase(const Session& session);
void ListWells(const Session& session);
void ShowIdentity(const Session& session);
void ListUnits(const Session& session);
void GetProperties(const Session& session);
void SetOneProperty(const Session& session);
void DoOneCommand(const Session& session);
void SaveBlock(const Session& session);
void LoadBlock(const Session& session);
void ServeVariables(const Session& session);
void Describe(const Session& session);
void OpenConfiguration(const Session& session);
void OpenSettings(const Session& session);
void OpenExport(const Session& session);
/// Makes the report of a run from its tables.
bool ReportRun(const Options& options);
bool ShowReference(const Options& options);

/// Checks a case or, without one, a simulator. False for a case with faults.
bool Check(const Options& options);
/// Tells all that is wrong with a case and, where its simulator can say so, with its deck. False
/// when something is.
bool CheckFiles(const std::string& caseFile, const Options& options);
/// Holds a simulator to the protocol, and tells rule by rule what came of it. Throws runtime_error
/// when a rule doesn't hold.
void CheckSimulator(const Options& options);

/// The simulator of the machine's settings; empty when none is set.
std::string MachineSimulator();

/// The simulator to start when the case names none: the machine's own (an empty text, since the
/// module knows it), else the tanksim beside this program.
std::string DefaultSimulator();

/// Reads the case of the command line, with what the command line puts in place of its words.
CaseModel ReadCaseOf(const Options& options);

/// A run that is resumed: what it was, and what it knew of itself behind its last whole step.
struct ResumedRun {
  StoredRun stored;  ///< its warnings as they were behind that step
  LeftRun left;
  double simulatorDays = 0;  ///< of the simulator's own clock, at which it is to go on
};

/// Runs a case, or goes on with its run, and leaves its results.
void ConductRun(const Session& session, const CaseModel& caseModel, const ResumedRun* resumed);

/// A model as the one-shot verbs want it: with the case's settings or a saved block, and with the
/// simulator started when the command line asks for it.
void PrepareModel(DriverModel& model, const CaseModel& caseModel, const Options& options);

/// Prints rows as JSON, or as a table for people. A row is an object of texts, numbers and flags;
/// all have the same keys.
void Print(const std::vector<Json>& rows, bool asJson);

}  // namespace gantry::fieldrun
