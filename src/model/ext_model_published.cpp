// The variables that the user publishes to the host, and the names of those that the host asks for
// by itself.

#include <cstddef>

#include "model/ext_model.h"
#include "model/model_failure.h"
#include "text/number_text.h"

namespace gantry {
namespace {

/// What tells the entries of one variable apart.
std::string EntrySuffix(const CExportedVariables::Entry& entry,
                        const std::vector<std::string>& components) {
  switch (entry.variable->Kind) {
    case 1:
      return {};
    case 0:
      return "[" + components[entry.element] + "]";
    default:
      return "[" + std::to_string(entry.element) + "]";
  }
}

/// The text to write, which goes on behind the field's own end where the host gives a longer one.
std::string TextOf(const EvalPublishedRequest& request) {
  return reinterpret_cast<const char*>(&request) + offsetof(EvalPublishedRequest, value);
}

}  // namespace

int32_t CExtModel::GetVariableNames(VariableNamesRecord* record, ExtErrorBlock* /*err*/) {
  CopyBounded(record->reservoirProductionRate, "Well[{~}].RES_VOLUME_PRODUCTION_RATE_FIELD");
  CopyBounded(record->reservoirInjectionRate, "Well[{~}].RES_VOLUME_INJECTION_RATE_FIELD");
  CopyBounded(record->reservoirProductionCumulative, "Well[{~}].RES_VOLUME_PRODUCTION_CUML_FIELD");
  CopyBounded(record->reservoirInjectionCumulative, "Well[{~}].RES_VOLUME_INJECTION_CUML_FIELD");
  CopyBounded(record->waterProductionRate, "Well[{~}].WATER_PRODUCTION_RATE_FIELD");
  CopyBounded(record->oilProductionRate, "Well[{~}].OIL_PRODUCTION_RATE_FIELD");
  CopyBounded(record->gasProductionRate, "Well[{~}].GAS_PRODUCTION_RATE_FIELD");
  CopyBounded(record->waterInjectionRate, "Well[{~}].WATER_INJECTION_RATE_FIELD");
  CopyBounded(record->gasInjectionRate, "Well[{~}].GAS_INJECTION_RATE_FIELD");
  record->reservoirRateFactor = 1.0;
  record->reservoirCumulativeFactor = 1.0;
  record->liquidRateFactor = 1.0;
  record->gasRateFactor = 1.0;
  return 0;
}

int32_t CExtModel::EnumPublishedVariables(PublishedVariableRow* row, ExtErrorBlock* /*err*/) {
  if (row->handle == INT32_MAX) return -1;
  const int32_t handle = row->handle + 1;
  const auto entry = ExportedVariables.FindEntry(handle, ComponentNames.size());
  if (entry.variable == nullptr) return -1;
  const std::string name = entry.variable->Label + EntrySuffix(entry, ComponentNames);
  row->handle = handle;
  row->isWriteable = entry.variable->SimulatorItem.empty() ? 0 : 1;
  CopyBounded(row->fullName, entry.wellParent->WellName + ":" + name);
  CopyBounded(row->wellName, entry.wellParent->WellName);
  CopyBounded(row->shortName, name);
  row->code = entry.variable->Code;
  return 0;
}

int32_t CExtModel::EvalPublishedVariables(EvalPublishedRequest* request, ExtErrorBlock* err) {
  const platform::SingleLock lock(Lock);
  if (!IsRunning()) return 0;
  const auto entry = ExportedVariables.FindEntry(request->handle, FluidModel.componentNames.size());
  if (entry.variable == nullptr) {
    return Fail(err, "Unexpected handle passed to EvalPublishedVariables");
  }
  return request->isWrite == 0 ? ReadPublished(entry, *request, err)
                               : WritePublished(entry, *request, err);
}

int32_t CExtModel::ReadPublished(const CExportedVariables::Entry& entry,
                                 EvalPublishedRequest& request, ExtErrorBlock* err) {
  double value = 0.0;
  std::string error;
  if (entry.wellParent->Evaluate(*Session->Connector, *entry.variable, entry.element, value,
                                 error) != 0) {
    return Fail(err, "Error retrieving " + entry.variable->Label + ": " + error);
  }
  CopyBounded(request.value, FormatDouble(value));
  return 0;
}

// A well that the host's network drives can't be set by hand; that is a notice, and no failure.
int32_t CExtModel::WritePublished(const CExportedVariables::Entry& entry,
                                  const EvalPublishedRequest& request, ExtErrorBlock* err) {
  const CExportedVariable& variable = *entry.variable;
  if (variable.SimulatorItem.empty()) {
    return Fail(err, "Attempting to set a read-only variable (" + variable.Label + ")");
  }
  const StaticWellData* const well = Wells.Find(entry.wellParent->WellName);
  if (well == nullptr) return 0;
  if (well->Connected) {
    const std::string notice =
        "Could not set property on " + well->Name + " as this well is connected";
    TellHost(notice, HostLogCallback);
    TellHost(notice, HostStatusCallback);
    return 0;
  }
  std::string error;
  if (entry.wellParent->Assign(*Session->Connector, variable, entry.element, TextOf(request),
                               error) != 0) {
    return Fail(err, "Error writing to " + variable.Label + ": " + error);
  }
  return 0;
}

void CExtModel::TellHost(const std::string& text, HostTextCallback callback) {
  if (callback != nullptr) callback(text.c_str(), static_cast<CExtInterface*>(this));
}

// Kept on purpose: the bound is the number of wells, and the well taken out is the one at the place
// of the handle, whichever well the variable belonged to.
int32_t CExtModel::DelPublishedVariable(int32_t handle, ExtErrorBlock* err) {
  if (handle == -1) {
    ExportedVariables.RemoveAll();
    return 0;
  }
  if (handle < 0 || static_cast<size_t>(handle) >= ExportedVariables.Size()) {
    return Fail(err, "Bad handle passed to DelPublishedVariable()");
  }
  const auto entry = ExportedVariables.FindEntry(handle, FluidModel.componentNames.size());
  if (entry.variable != nullptr) entry.wellParent->Remove(*entry.variable);
  ExportedVariables.TakeOut(static_cast<size_t>(handle));
  return 0;
}

}  // namespace gantry
