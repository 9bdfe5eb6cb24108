// How a run comes up: the simulator's process, its static data, and the way to the host's date.

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "client/name_index.h"
#include "model/ext_model.h"
#include "model/fluid_record.h"
#include "model/model_failure.h"
#include "model/session_factory.h"
#include "model/well_reading.h"
#include "sessions/job_slot.h"

namespace gantry {

int32_t CExtModel::StartSimulator(const SimulatorStartRecord* record, ExtErrorBlock* err) {
  if (record != nullptr) RunMode = record->runMode;
  if (SkipNextStart) return 0;
  const platform::SingleLock lock(Lock);
  CurrentElapsedDays = StartElapsedDays = SimulatorDays = -1.0;
  SimulationDate = {};
  Sources.Items.clear();
  DropSession();
  if (OpenSession(err) != 0) return 1;
  const std::vector<std::string> oldNames = ComponentNames;
  if (ReadStaticData(err) != 0) {
    DropSession();
    return 1;
  }
  Wells.RebuildFrom(Sources);
  RegisterWells();
  PruneExportedVariables(oldNames != ComponentNames);
  return 0;
}

int32_t CExtModel::OpenSession(ExtErrorBlock* err) {
  if (Settings.ConnectionMode == 0) Settings.FileName = DatasetForJobSlot(Settings.FileName);
  Session = MakeSession(Settings);
  hasSession_ = true;
  std::string message;
  if (Session->Start(message) != 0) {
    DropSession();
    return FailWith(err, "Could not start the simulator process", message);
  }
  try {
    ReadClock();
    return 0;
  } catch (const std::exception& failure) {
    DropSession();
    return FailWith(err, "Simulator communication error", failure.what());
  }
}

void CExtModel::ReadClock() {
  CExtConnectorBase& connector = *Session->Connector;
  const auto read = [&connector](auto get) {
    int32_t day = 0, month = 0, year = 0;
    (connector.*get)(day, month, year);
    const CalendarDate date = MakeDate(day, month, year);
    if (date.IsValid()) return date;
    throw std::runtime_error(FormatText("%d/%d/%d is no date", day, month, year));
  };
  CurrentElapsedDays = connector.GetTimeDays();
  SimulationDate = read(&CExtConnectorBase::GetDate);
  const CalendarDate start = read(&CExtConnectorBase::GetStartDate);
  StartElapsedDays = DaysBetween(start, SimulationDate).value_or(0.0);
}

int32_t CExtModel::ReadStaticData(ExtErrorBlock* err) {
  if (Session == nullptr) return Fail(err, "No connection to simulator (ReadStaticData)");
  try {
    ReadFluid();
    CExtConnectorBase& connector = *Session->Connector;
    connector.AdvanceNewton();  // wells are initialised from here on
    std::vector<ConnectorWellStatus> statuses;
    connector.GetWellStatus(statuses);
    Sources = MakeSources(statuses);
    return 0;
  } catch (const std::exception& failure) {
    return FailWith(err, "Connection to simulator failed (ReadStaticData)", failure.what());
  }
}

void CExtModel::ReadFluid() {
  Compositional = Session->Connector->GetCompositionalFlag();
  FluidModel = {};
  fluidRecord_.reset();
  if (Compositional) Session->Connector->GetEOSProperties(FluidModel);
  ComponentNames = FluidModel.componentNames;
  fluidRecord_ = MakeFluidRecord(FluidModel);
}

void CExtModel::RegisterWells() {
  Inflow->StartIPRAddWell(InflowHandle);
  for (size_t i = 0; i < Sources.Items.size(); ++i) {
    const Source& source = Sources.Items[i];
    const bool second = source.SourceType != kGasInjector && !source.IsGasWell();
    Inflow->AddIPRWell(InflowHandle, static_cast<int32_t>(i), source.Name.c_str(),
                       source.SourceType == kProducer, second);
  }
  Inflow->EndIPRAddWell(InflowHandle);
}

void CExtModel::PruneExportedVariables(bool componentsChanged) {
  NameIndex index;
  for (const StaticWellData& well : Wells.Items) index.Add(well.Name);
  for (size_t i = ExportedVariables.Size(); i-- > 0;) {
    CExportedVariableWellParent& parent = ExportedVariables[i];
    if (!index.Find(parent.WellName)) {
      ExportedVariables.TakeOut(i);
      continue;
    }
    for (size_t v = parent.Variables.Size(); componentsChanged && v-- > 0;) {
      if (parent.Variables[v].Kind == 0) parent.Variables.TakeOut(v);
    }
  }
}

int32_t CExtModel::StartRun(const RunStartRecord* record, ExtErrorBlock* err) {
  return RunStart(false, *record, err);
}

int32_t CExtModel::RunStart(bool allWells, const RunStartRecord& record, ExtErrorBlock* err) {
  const platform::SingleLock lock(Lock);
  StopRequested = false;
  InCalculatorStep = false;
  HostLogCallback = record.logCallback;
  HostStatusCallback = record.statusCallback;
  MarkConnected(allWells, record);
  RunMode = record.runMode;
  if (!IsRunning() && StartJob(record, err) != 0) return 1;
  SimulatorDays = StartElapsedDays;
  if (RunUpTo(record.startDate, err) != 0) return 1;
  return Compositional ? SetUpGasInjection(err) : 0;
}

void CExtModel::MarkConnected(bool allWells, const RunStartRecord& record) {
  for (StaticWellData& well : Wells.Items) well.Connected = allWells;
  if (allWells || record.connectedWells == nullptr) return;
  for (int32_t i = 0; i < record.connectedCount; ++i) {
    const int32_t well = record.connectedWells[i];
    if (well < 0 || static_cast<size_t>(well) >= Wells.Items.size()) continue;
    Wells.Items[static_cast<size_t>(well)].Connected = true;
  }
}

// The simulator must still be the one that the case was built on; the host's marks and modes of the
// wells outlive the start.
int32_t CExtModel::StartJob(const RunStartRecord& record, ExtErrorBlock* err) {
  Compositional = false;
  const StaticWellDataCollection hostWells = Wells;
  const std::vector<std::string> hostNames = ComponentNames;
  const bool exportsComponents = ExportedVariables.HasPerComponentVariable();
  SkipNextStart = false;
  SimulatorStartRecord start = {};
  start.runMode = record.runMode;
  if (StartSimulator(&start, err) != 0) return 1;
  if (const auto difference = ReconcileWells(hostWells, Wells)) return Fail(err, *difference);
  if (exportsComponents && hostNames != ComponentNames) {
    return Fail(err, "The simulator composition has changed, so the simulator must be reloaded");
  }
  Wells = hostWells;
  return 0;
}

// Steps of at most 30 days let a stop from another thread take effect; what the simulator has
// reached, not what was asked, ends the loop.
int32_t CExtModel::RunUpTo(double hostDate, ExtErrorBlock* err) {
  constexpr double kLongestStep = 30.0;
  constexpr double kCloseEnough = 0.1;
  const double total = hostDate - static_cast<double>(SimulationDate.DayNumber);
  if (!SimulationDate.IsValid() || !(total > 0.0)) return 0;
  if (total > kMaxDateDifference) return Fail(err, "The start date of the run is out of range");
  TellHost("Running Intersect to Tessel start date", HostStatusCallback);
  double remaining = total;
  do {
    OpPointsApplied = true;  // no orders on the way
    if (StepBy(std::min(remaining, kLongestStep), err) != 0) return 1;
    remaining = total - (SimulatorDays - StartElapsedDays);
  } while (!StopRequested && remaining > kCloseEnough);
  return 0;
}

int32_t CExtModel::SetUpGasInjection(ExtErrorBlock* err) {
  Doubles placeholder(ComponentNames.size(), 0.0);
  if (!placeholder.empty()) placeholder.front() = 1.0;
  try {
    for (const StaticWellData& well : Wells.Items) {
      if (!well.Connected || well.SourceType != kGasInjector) continue;
      const std::string source = InjectionSourceName(well.Name);
      Session->Connector->SetInjectionSource(well.Name, source);
      Session->Connector->SetWellInjectionComposition({source}, {placeholder});
    }
    return 0;
  } catch (const std::exception& failure) {
    return FailWith(err, "Connection to simulator failed (StartRun)", failure.what());
  }
}

int32_t CExtModel::GetFluidModel(FluidModelRecord* record, ExtErrorBlock* /*err*/) {
  if (record == nullptr || fluidRecord_ == nullptr) return 1;
  CopyFluidRecord(*fluidRecord_, *record);
  return 0;
}

int32_t CExtModel::GetSimulationDate(DateRecord* record, ExtErrorBlock* /*err*/) {
  constexpr int32_t kHasNumber = 1;
  constexpr int32_t kHasDay = 2;
  if (record == nullptr || !SimulationDate.IsValid()) return 1;
  record->flags = kHasDay;
  SplitDate(SimulationDate, record->day, record->month, record->year);
  const CalendarDate dayZero = {.DayNumber = 0, .Status = CalendarDate::kValid};
  if (const auto number = DaysBetween(dayZero, SimulationDate)) {
    record->number = *number;
    record->flags |= kHasNumber;
  }
  return 0;
}

}  // namespace gantry
