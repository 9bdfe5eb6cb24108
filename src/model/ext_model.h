#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "boundary/ext_interface.h"
#include "client/connector_records.h"
#include "model/calendar_date.h"
#include "model/inflow_library.h"
#include "model/step_orders.h"
#include "platform/lock.h"
#include "sessions/job_session.h"
#include "settings/link_settings.h"
#include "wells/exported_variables.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry {

/// One simulator in the host's schematic: one case, at most one running job. The host makes it,
/// calls it through its commands and destroys it; it survives every failure of the simulator, and a
/// run can be started again at any time.
///
/// The host calls from one thread, with one exception: `CloseSimulator` may come from a second one
/// while a long start is under way, and ends it after its present step. `Lock` guards the session
/// and all talk to the simulator. What works on the lists of wells takes no lock: these change only
/// under the host's own calling order.
///
/// Rates are in STB/d and MMscf/d, pressures in psig, times in days. Failures are a result of 1
/// with a text in `err`; nothing is thrown for what a simulator does.
class CExtModel : public CExtInterface {
 public:
  CExtModel();
  ~CExtModel() override;
  CExtModel(const CExtModel&) = delete;
  CExtModel& operator=(const CExtModel&) = delete;

  // Lifecycle and the wells of the case.
  int32_t EnumSources(EnumSourcesRow* row, uint32_t mode, ExtErrorBlock* err) override;
  int32_t SetConnection(const SetConnectionRequest* request, ExtErrorBlock* err) override;
  int32_t StartApplication(uint32_t value, ExtErrorBlock* err) override;
  int32_t StopApplication() override;
  int32_t StopSimulator(ExtErrorBlock* err) override;
  int32_t CloseSimulator() override;
  /// True while a simulator lives. Safe from any thread.
  bool IsRunning();

  // Start-up and static data.
  int32_t StartSimulator(const SimulatorStartRecord* record, ExtErrorBlock* err) override;
  int32_t StartRun(const RunStartRecord* record, ExtErrorBlock* err) override;
  int32_t GetFluidModel(FluidModelRecord* record, ExtErrorBlock* err) override;
  int32_t GetSimulationDate(DateRecord* record, ExtErrorBlock* err) override;

  // The step.
  int32_t SetTimestepData(void* data, bool flag, ExtErrorBlock* err) override;
  int32_t ApplyOperatingPoints(ExtErrorBlock* err) override;
  int32_t Timestep(const TimestepRecord* record, ExtErrorBlock* err) override;

  // Inflow and operating points.
  int32_t GetIPR(_tGetSetData* record, ExtErrorBlock* err) override;
  int32_t SetOpPt(const _tGetSetData* record, ExtErrorBlock* err) override;

  // Text paths, commands and published variables.
  int32_t GetProperty(GetPropertyRequest* request, ExtErrorBlock* err) override;
  int32_t SetProperty(const SetPropertyRequest* request, ExtErrorBlock* err) override;
  int32_t DoCommand(const char* text, ExtErrorBlock* err) override;
  int32_t GetDescription(char* buffer, uint32_t length, ExtErrorBlock* err) override;
  int32_t GetVariableNames(VariableNamesRecord* record, ExtErrorBlock* err) override;
  int32_t EnumPublishedVariables(PublishedVariableRow* row, ExtErrorBlock* err) override;
  int32_t EvalPublishedVariables(EvalPublishedRequest* request, ExtErrorBlock* err) override;
  int32_t DelPublishedVariable(int32_t handle, ExtErrorBlock* err) override;

  int32_t GetEquipmentXml(EquipmentModel& equipment, bool withoutVariables,
                          const std::vector<std::string>& names) override;

  // The case and its files.
  int32_t SaveCaseData(char* buffer, uint32_t capacity, ExtErrorBlock* err) override;
  int32_t LoadCaseData(const CaseDataRecord* record, ExtErrorBlock* err) override;
  int32_t SetDataFile(const SetDataFileRecord* record, ExtErrorBlock* err) override;
  int32_t SetDataFolder(const char* folder, ExtErrorBlock* err) override;
  int32_t SetStoreFile(const char* path, bool load, ExtErrorBlock* err) override;
  int32_t EnumDataFiles(EnumDataFilesRow* row, uint32_t value, ExtErrorBlock* err) override;

  // Dialogs; their bodies stand with the dialogs.
  int32_t Edit(void* window, uint32_t* changed, ExtErrorBlock* err) override;
  int32_t EditPublishedVariables(void* window, ExtErrorBlock* err) override;
  int32_t DrawIcon(void* window, void* deviceContext) override;
  /// The inflow library's own settings, over a window of the case's dialog.
  void SetUpInflow(void* window);

  // What this driver has no use for.
  int32_t QueryByIndex(uint32_t, ExtErrorBlock*) override { return -999; }
  int32_t Reserved3() override { return 0; }
  int32_t NotifySixty(ExtErrorBlock*) override { return 0; }
  int32_t Reserved11() override { return 0; }
  int32_t Reserved12() override { return 0; }
  int32_t Reserved14() override { return 0; }
  int32_t ImportComposition(void* window, void* data, bool flag, ExtErrorBlock* err) override;

  LinkSettings Settings;
  std::vector<std::string> ComponentNames;  ///< in the simulator's order; empty for black oil
  double CurrentElapsedDays = -1.0;         ///< the simulator's time
  double StartElapsedDays = -1.0;           ///< from the deck's start to its date at the connection
  double SimulatorDays = -1.0;              ///< last told to reach, counted like `StartElapsedDays`
  CalendarDate SimulationDate;              ///< the simulator's date at the connection
  std::string StoreFileName;                ///< keeps the inflow model and the exported variables
  int32_t RunMode = 0;                      ///< the host's word, only kept
  SourceList Sources;                       ///< positions are the handles of `GetIPR` and `SetOpPt`
  StaticWellDataCollection Wells;           ///< positions are the handles of `SetConnection`
  CExportedVariables ExportedVariables;
  bool Compositional = false;
  EOSProperties FluidModel;
  std::string CaseFileName;

 private:
  friend struct ModelCallbacks;

  // Start-up.
  int32_t RunStart(bool allWells, const RunStartRecord& record, ExtErrorBlock* err);
  int32_t StartJob(const RunStartRecord& record, ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  int32_t OpenSession(ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  void ReadClock() GANTRY_REQUIRES(Lock);
  int32_t ReadStaticData(ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  void ReadFluid() GANTRY_REQUIRES(Lock);
  void MarkConnected(bool allWells, const RunStartRecord& record);
  void RegisterWells();
  void PruneExportedVariables(bool componentsChanged);
  int32_t RunUpTo(double hostDate, ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  int32_t SetUpGasInjection(ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  void DropSession() GANTRY_REQUIRES(Lock);

  // The step.
  int32_t ReadWells(bool connectedOnly, ExtErrorBlock* err);
  int32_t ReadWellRecords(const std::vector<std::string>& names, ExtErrorBlock* err)
      GANTRY_REQUIRES(Lock);
  int32_t RunStep(double days, ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  int32_t StepBy(double days, ExtErrorBlock* err);

  // Inflow.
  bool HasSource(int32_t well) const;
  void FillInflowRecord(const Source& source, _tGetSetData& record) const;
  void TransformInflow(const Source& source, _tGetSetData& record);

  // Commands.
  bool ReadOwnWord(TagParser& parser);
  bool HandlePath(TagParser& parser);
  void RunCommandText(const char* text, ExtErrorBlock& err);
  void StartByCommand(ExtErrorBlock& err);
  void StopByCommand(ExtErrorBlock& err);
  void RunToTime(double target, ExtErrorBlock& err);
  int32_t ReadPublished(const CExportedVariables::Entry& entry, EvalPublishedRequest& request,
                        ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  int32_t WritePublished(const CExportedVariables::Entry& entry,
                         const EvalPublishedRequest& request, ExtErrorBlock* err)
      GANTRY_REQUIRES(Lock);
  void TellHost(const std::string& text, HostTextCallback callback);

  void PointAtFolder(const std::string& folder, bool onlyIfThere);
  void LookForMovedDataset();

  bool SkipNextStart = false;
  std::atomic<bool> StopRequested = false;
  platform::CriticalSection Lock;
  std::unique_ptr<CJobSession> Session GANTRY_GUARDED_BY(Lock);
  std::atomic<bool> hasSession_ = false;  ///< whether `Session` is set, for those without the lock
  std::unique_ptr<InflowLibrary> Inflow;
  void* InflowHandle = nullptr;
  HostTextCallback HostLogCallback = nullptr;
  HostTextCallback HostStatusCallback = nullptr;
  bool OpPointsApplied = false;     ///< the orders of the present step have been sent
  bool InCalculatorStep = false;    ///< the inflow library is stepping the simulator
  bool holdsForeignState_ = false;  ///< the store file holds what could not be read from it
  std::unique_ptr<const FluidModelRecord> fluidRecord_;  ///< null where the host gets none
  std::vector<ConnectorWellRecord> wellRecords_;  ///< empty between reads; only for its storage
  StepOrders orders_;                             ///< of the last step; only for its storage
  std::unique_ptr<_tGetSetData> spareState_;  ///< zero but for its first points; kept between wells
};

}  // namespace gantry
