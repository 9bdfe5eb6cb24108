#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "boundary/records.h"

namespace gantry {

struct EquipmentModel;

/// What the host can ask of a model: one virtual operation for each command of the command table.
/// The order is part of the design, and reserved places keep theirs. Results: 0 success, 1 failure
/// with a text in `err`, -1 the end of an enumeration or a cancelled dialog; the defaults are what
/// the host sees of an operation that a driver has no use for. Records belong to the host.
class CExtInterface {
 public:
  virtual int32_t Edit(void* window, uint32_t* changed, ExtErrorBlock* err) = 0;
  virtual int32_t QueryByIndex(uint32_t value, ExtErrorBlock* err) = 0;
  virtual int32_t Reserved3() = 0;
  virtual int32_t EnumSources(EnumSourcesRow* row, uint32_t mode, ExtErrorBlock* err) = 0;
  virtual int32_t GetFluidModel(FluidModelRecord* record, ExtErrorBlock* err) = 0;
  virtual int32_t StartRun(const RunStartRecord* record, ExtErrorBlock* err) = 0;
  virtual int32_t Timestep(const TimestepRecord* record, ExtErrorBlock* err) = 0;
  virtual int32_t Reserved8() { return 0; }
  virtual int32_t NotifySixty(ExtErrorBlock* err) = 0;
  virtual int32_t GetIPR(_tGetSetData* record, ExtErrorBlock* err) = 0;
  virtual int32_t Reserved11() = 0;
  virtual int32_t Reserved12() = 0;
  virtual int32_t SetOpPt(const _tGetSetData* record, ExtErrorBlock* err) = 0;
  virtual int32_t Reserved14() = 0;
  virtual int32_t StopSimulator(ExtErrorBlock* err) = 0;
  virtual int32_t CloseSimulator() = 0;
  virtual int32_t SaveCaseData(char* buffer, uint32_t capacity, ExtErrorBlock* err) = 0;
  virtual int32_t LoadCaseData(const CaseDataRecord* record, ExtErrorBlock* err) = 0;
  virtual int32_t SetDataFile(const SetDataFileRecord* record, ExtErrorBlock* err) = 0;
  virtual int32_t StartSimulator(const SimulatorStartRecord* /*record*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t DrawIcon(void* /*window*/, void* /*deviceContext*/) { return 0; }
  virtual int32_t GetProperty(GetPropertyRequest* request, ExtErrorBlock* err);
  virtual int32_t GetPropertyAddress(GetPropertyRequest* request, ExtErrorBlock* err);
  virtual int32_t Reserved24() { return -1; }
  virtual int32_t SetProperty(const SetPropertyRequest* /*request*/, ExtErrorBlock* /*err*/) {
    return -1;
  }
  virtual int32_t DoCommand(const char* /*text*/, ExtErrorBlock* /*err*/) { return -1; }
  virtual int32_t Reserved27() { return -1; }
  virtual int32_t Reserved28() { return 0; }
  virtual int32_t NotifyFiftyEight(void* /*data*/, ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t Reserved30() { return 0; }
  virtual int32_t NotifyFour(ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t Reserved32() { return 0; }
  virtual int32_t Reserved33() { return 0; }
  virtual int32_t Reserved34() { return 0; }
  virtual int32_t SetDataFolder(const char* /*folder*/, ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t GetSimulationDate(DateRecord* /*record*/, ExtErrorBlock* /*err*/) { return 1; }
  virtual int32_t QueryCanRun(void* /*data*/, ExtErrorBlock* /*err*/) { return 1; }
  virtual int32_t SetTimestepData(void* /*data*/, bool /*flag*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t NotifyHundred(ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t ApplyOperatingPoints(ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t Reserved41() { return 0; }
  virtual int32_t Reserved42() { return 0; }
  virtual int32_t Reserved43() { return 0; }
  virtual int32_t Reserved44() { return 0; }
  virtual int32_t Reserved45() { return 0; }
  virtual int32_t Reserved46() { return 0; }
  virtual int32_t SetStoreFile(const char* /*path*/, bool /*load*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t SetConnection(const SetConnectionRequest* /*request*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t Reserved49() { return 0; }
  virtual int32_t Reserved50() { return 0; }
  virtual int32_t GetDescription(char* /*buffer*/, uint32_t /*length*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t ImportComposition(void* /*window*/, void* /*data*/, bool /*flag*/,
                                    ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t Reserved53() { return 0; }
  virtual int32_t Reserved54() { return 0; }
  virtual int32_t StartApplication(uint32_t /*value*/, ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t ConnectToApplication(uint32_t first, uint32_t second, ExtErrorBlock* err);
  virtual int32_t StopApplication() { return 0; }
  /// `names` selects wells by their names; none selects every well.
  virtual int32_t GetEquipmentXml(EquipmentModel& /*equipment*/, bool /*withoutVariables*/,
                                  const std::vector<std::string>& /*names*/) {
    return 0;
  }
  virtual int32_t Reserved59() { return 0; }
  virtual int32_t Reserved60() { return 0; }
  virtual int32_t Reserved61() { return 0; }
  virtual int32_t Reserved62() { return 0; }
  virtual int32_t Reserved63() { return 0; }
  virtual int32_t Reserved64() { return 0; }
  virtual int32_t Reserved65() { return 0; }
  virtual int32_t Reserved66() { return 0; }
  virtual int32_t Reserved67() { return 0; }
  virtual int32_t Reserved68() { return 0; }
  virtual int32_t Reserved69() { return 0; }
  virtual int32_t Reserved70() { return 0; }
  virtual int32_t Reserved71() { return 0; }
  virtual int32_t Reserved72() { return 0; }
  virtual int32_t Reserved73() { return 0; }
  virtual int32_t Reserved74() { return 0; }
  virtual int32_t Reserved75() { return 0; }
  virtual int32_t GetVariableNames(VariableNamesRecord* /*record*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t Reserved77() { return 0; }
  virtual int32_t Reserved78() { return 0; }
  virtual int32_t Reserved79() { return 0; }
  virtual int32_t Reserved80() { return 0; }
  virtual int32_t EditPublishedVariables(void* /*window*/, ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t EnumPublishedVariables(PublishedVariableRow* /*row*/, ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t EvalPublishedVariables(EvalPublishedRequest* /*request*/,
                                         ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual int32_t Reserved84() { return 0; }
  virtual int32_t Reserved85() { return 0; }
  virtual int32_t Reserved86() { return 0; }
  virtual int32_t Reserved87() { return 0; }
  virtual int32_t Reserved88() { return 0; }
  virtual int32_t Reserved89() { return 0; }
  virtual int32_t DelPublishedVariable(int32_t /*handle*/, ExtErrorBlock* /*err*/) { return 0; }
  virtual int32_t Reserved91() { return 0; }
  virtual int32_t EnumDataFiles(EnumDataFilesRow* /*row*/, uint32_t /*value*/,
                                ExtErrorBlock* /*err*/) {
    return 0;
  }
  virtual ~CExtInterface() = default;

  /// Set by the host, read back by nobody but the equipment description.
  std::string InstanceLabel;
};

}  // namespace gantry
