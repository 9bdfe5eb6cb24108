// The model's lifecycle, and the wells of its case.

#include "model/ext_model.h"

#include "model/inflow_callbacks.h"
#include "model/model_failure.h"

namespace gantry {

CExtModel::CExtModel() : Inflow(InflowLibrary::Open()) {
  InflowHandle = Inflow->CreateIPRModel(this);
  if (InflowHandle == nullptr) Inflow = InflowLibrary::None();
  Inflow->SetIPRCallbacks(InflowHandle, ModelCallbacks::Table());
}

CExtModel::~CExtModel() {
  if (hasSession_) CloseSimulator();
  if (InflowHandle != nullptr) Inflow->DestroyIPRModel(InflowHandle);
}

bool CExtModel::IsRunning() {
  const platform::SingleLock lock(Lock);
  return Session != nullptr && Session->IsRunning();
}

void CExtModel::DropSession() {
  Session.reset();
  hasSession_ = false;
}

// The request stands before the lock is taken, so that a start on another thread ends after its
// present step and lets this one in.
int32_t CExtModel::CloseSimulator() {
  StopRequested = true;
  if (!hasSession_) return 0;
  const platform::SingleLock lock(Lock);
  DropSession();
  return 0;
}

int32_t CExtModel::StopSimulator(ExtErrorBlock* err) {
  return CloseSimulator() > 0 ? Fail(err, "Failed to stop simulator") : 0;
}

int32_t CExtModel::StartApplication(uint32_t /*value*/, ExtErrorBlock* err) {
  SimulatorStartRecord record = {};
  record.runMode = 1;
  return StartSimulator(&record, err);
}

int32_t CExtModel::StopApplication() {
  CloseSimulator();
  return 0;
}

int32_t CExtModel::ImportComposition(void* /*window*/, void* /*data*/, bool /*flag*/,
                                     ExtErrorBlock* err) {
  return Fail(err, "Compositional import from IX not supported yet");
}

int32_t CExtModel::EnumSources(EnumSourcesRow* row, uint32_t mode, ExtErrorBlock* /*err*/) {
  constexpr uint32_t kFirstOnly = 2;
  if (mode == kFirstOnly && row->index >= 0) return -1;
  const size_t next = row->index < 0 ? 0 : static_cast<size_t>(row->index) + 1;
  if (next >= Wells.Items.size()) return -1;
  const StaticWellData& well = Wells.Items[next];
  row->kind = well.SourceType == kProducer ? 1 : 2;
  row->one1 = 1;
  row->one2 = 1;
  row->kindAgain = row->kind;
  row->zero = 0;
  row->one3 = 1;
  row->index = static_cast<int32_t>(next);
  CopyBounded(row->name, well.Name);
  CopyBounded(row->sourceWord, "source");
  return 0;
}

int32_t CExtModel::SetConnection(const SetConnectionRequest* request, ExtErrorBlock* err) {
  if (request->well < 0 || static_cast<size_t>(request->well) >= Wells.Items.size()) {
    return Fail(err, "Handle passed to SetConnection() out of range");
  }
  Wells.Items[static_cast<size_t>(request->well)].Connected = request->connected != 0;
  return 0;
}

}  // namespace gantry
