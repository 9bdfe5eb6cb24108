#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "boundary/ext_interface.h"
#include "model/case.h"
#include "model/field.h"
#include "model/inflow_callbacks.h"
#include "model/inflow_model.h"
#include "model/model_dialogs.h"
#include "model/published_variables.h"
#include "model/run.h"
#include "text/tag_parser.h"

namespace gantry {

/// One simulator in the host's schematic: one case, at most one running job. The host makes it,
/// calls it through its commands and destroys it; it survives every failure of the simulator, and a
/// run can be started again at any time. Its parts do the work: `Case` holds what lasts, `Run` the
/// simulator, `Field` the wells of the run, `InflowModel` the inflow library's side of them, and
/// `PublishedVariables` what the user publishes.
///
/// The host calls from one thread, with two exceptions: `CloseSimulator` may come from a second one
/// while a long start is under way, and ends it after its present step; and so may a question for
/// what the records hold. `Run` has the lock for all talk to the simulator. What works on the lists
/// of wells takes no lock: these change only under the host's own calling order.
///
/// Rates are in STB/d and MMscf/d, pressures in psig, times in days. Failures are a result of 1
/// with a text in `err`; nothing is thrown for what a simulator does.
class CExtModel : public CExtInterface, public EditedCase, public InflowDriver {
 public:
  explicit CExtModel(DialogsOver dialogsOver);
  ~CExtModel() override;

  // Lifecycle and the wells of the case.
  int32_t EnumSources(EnumSourcesRow* row, uint32_t mode, ExtErrorBlock*) override {
    return case_.EnumWells(*row, mode);
  }
  int32_t SetConnection(const SetConnectionRequest* request, ExtErrorBlock* err) override {
    return case_.SetConnection(request->well, request->connected != 0, err);
  }
  int32_t StartApplication(uint32_t, ExtErrorBlock* err) override {
    return StartSimulator(nullptr, err);
  }
  int32_t StopApplication() override { return CloseSimulator(); }
  int32_t StopSimulator(ExtErrorBlock* err) override;
  int32_t CloseSimulator() override;
  bool IsRunning() override { return run_.IsRunning(); }

  // Start-up and static data.
  int32_t StartSimulator(const SimulatorStartRecord* record, ExtErrorBlock* err) override;
  int32_t StartRun(const RunStartRecord* record, ExtErrorBlock* err) override {
    return RunStart(false, *record, err);
  }
  int32_t GetFluidModel(FluidModelRecord* record, ExtErrorBlock* err) override;
  int32_t GetSimulationDate(DateRecord* record, ExtErrorBlock* err) override;

  // The step.
  int32_t SetTimestepData(void*, bool, ExtErrorBlock* err) override { return ReadWells(true, err); }
  int32_t ApplyOperatingPoints(ExtErrorBlock* err) override;
  int32_t Timestep(const TimestepRecord* record, ExtErrorBlock* err) override {
    return StepBy(record->stepDays, err);
  }

  // Inflow and operating points.
  int32_t GetIPR(_tGetSetData* record, ExtErrorBlock* err) override;
  int32_t SetOpPt(const _tGetSetData* record, ExtErrorBlock* err) override;

  // Text paths, commands and published variables.
  int32_t GetProperty(GetPropertyRequest* request, ExtErrorBlock* err) override;
  int32_t SetProperty(const SetPropertyRequest* request, ExtErrorBlock* err) override;
  int32_t DoCommand(const char* text, ExtErrorBlock* err) override;
  int32_t GetDescription(char* buffer, uint32_t length, ExtErrorBlock* err) override;
  int32_t GetVariableNames(VariableNamesRecord* record, ExtErrorBlock*) override {
    return FillVariableNames(*record);
  }
  int32_t EnumPublishedVariables(PublishedVariableRow* row, ExtErrorBlock*) override {
    return published_.Next(*row, case_.ComponentNames);
  }
  int32_t EvalPublishedVariables(EvalPublishedRequest* request, ExtErrorBlock* err) override;
  int32_t DelPublishedVariable(int32_t handle, ExtErrorBlock* err) override {
    return published_.Delete(handle, field_.FluidModel.componentNames.size(), err);
  }

  int32_t GetEquipmentXml(EquipmentModel& equipment, bool withoutVariables,
                          const std::vector<std::string>& names) override;

  // The case and its files.
  int32_t SaveCaseData(char* buffer, uint32_t capacity, ExtErrorBlock* err) override {
    return case_.Save(buffer, capacity, inflow_, published_.List, err);
  }
  int32_t LoadCaseData(const CaseDataRecord* record, ExtErrorBlock* err) override;
  int32_t SetDataFile(const SetDataFileRecord* record, ExtErrorBlock*) override {
    return case_.SetDataFile(record->path);
  }
  int32_t SetDataFolder(const char* folder, ExtErrorBlock*) override {
    return case_.SetDataFolder(folder);
  }
  int32_t SetStoreFile(const char* path, bool load, ExtErrorBlock*) override {
    return case_.SetStoreFile(path, load, inflow_, published_.List);
  }
  int32_t EnumDataFiles(EnumDataFilesRow* row, uint32_t, ExtErrorBlock*) override {
    return case_.DescribeDataFile(*row);
  }

  // Dialogs.
  int32_t Edit(void* window, uint32_t* changed, ExtErrorBlock* err) override;
  int32_t EditPublishedVariables(void* window, ExtErrorBlock* err) override;
  int32_t DrawIcon(void* window, void* deviceContext) override;
  LinkSettings& Settings() override { return case_.Settings; }
  StaticWellDataCollection& Wells() override { return case_.Wells; }
  void SetUpInflow(void* window) override { inflow_.SetUp(window); }

  // What the inflow library asks for.
  double ElapsedDays() const override { return run_.CurrentElapsedDays; }
  int32_t Restart(ExtErrorBlock* err) override;
  int32_t ImposeRate(int32_t well, double rate, ExtErrorBlock* err) override;
  int32_t Advance(double days, ExtErrorBlock* err) override;
  int32_t ReadInflow(int32_t well, _tGetSetData& record, ExtErrorBlock* err) override;
  int32_t ReadCurrent(int32_t well, _tGetSetData& record, ExtErrorBlock* err) override;

  // What this driver has no use for.
  int32_t QueryByIndex(uint32_t, ExtErrorBlock*) override { return -999; }
  int32_t Reserved3() override { return 0; }
  int32_t NotifySixty(ExtErrorBlock*) override { return 0; }
  int32_t Reserved11() override { return 0; }
  int32_t Reserved12() override { return 0; }
  int32_t Reserved14() override { return 0; }
  int32_t ImportComposition(void* window, void* data, bool flag, ExtErrorBlock* err) override;

  SourceList& Sources() { return field_.Sources; }
  CExportedVariables& ExportedVariables() { return published_.List; }
  double SimulatorDays() const { return run_.SimulatorDays; }

 private:
  // Start-up.
  int32_t RunStart(bool allWells, const RunStartRecord& record, ExtErrorBlock* err);
  int32_t StartJob(ExtErrorBlock* err) GANTRY_REQUIRES(run_.Lock);
  int32_t ReadStaticData(ExtErrorBlock* err) GANTRY_REQUIRES(run_.Lock);
  int32_t RunUpTo(double hostDate, ExtErrorBlock* err);

  // The step.
  int32_t ReadWells(bool connectedOnly, ExtErrorBlock* err);
  int32_t StepBy(double days, ExtErrorBlock* err);

  // Commands.
  using CommandValues = CExtDataServerCmdArgumentCollection;
  bool ReadOwnWord(TagParser& parser);
  bool HandlePath(TagParser& parser);
  void RunCommandText(const char* text, ExtErrorBlock& err);
  void StartByCommand(const CommandValues& arguments, ExtErrorBlock& err);
  void StopByCommand(const CommandValues& arguments, ExtErrorBlock& err);
  void RunToTime(const CommandValues& arguments, ExtErrorBlock& err);
  void TellHost(const std::string& text, HostTextCallback callback);

  const DialogsOver dialogsOver_;
  Case case_;
  Run run_;
  Field field_;
  PublishedVariables published_;
  InflowModel inflow_;
  HostTextCallback hostLog_ = nullptr;
  HostTextCallback hostStatus_ = nullptr;
  bool skipNextStart_ = false;
  bool opPointsApplied_ = false;   ///< the orders of the present step have been sent
  bool inCalculatorStep_ = false;  ///< the inflow library is stepping the simulator
};

}  // namespace gantry
