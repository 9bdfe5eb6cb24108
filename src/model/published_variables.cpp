#include "model/published_variables.h"

#include <cstddef>

#include "client/name_index.h"
#include "model/model_failure.h"
#include "text/number_text.h"

namespace gantry {
namespace {

using Entry = CExportedVariables::Entry;

/// What tells the entries of one variable apart.
std::string EntrySuffix(const Entry& entry, const std::vector<std::string>& components) {
  switch (entry.variable->Kind) {
    case kOneValue:
      return {};
    case kOnePerComponent:
      return "[" + components[entry.element] + "]";
    default:
      return "[" + std::to_string(entry.element) + "]";
  }
}

int32_t Read(const Entry& entry, EvalPublishedRequest& request, CExtConnectorBase& connector,
             ExtErrorBlock* err) {
  double value = 0.0;
  std::string error;
  if (entry.wellParent->Evaluate(connector, *entry.variable, entry.element, value, error) != 0) {
    return Fail(err, "Error retrieving " + entry.variable->Label + ": " + error);
  }
  CopyBounded(request.value, FormatDouble(value));
  return 0;
}

/// The text to write, which goes on behind the field's own end where the host gives a longer one.
std::string TextOf(const EvalPublishedRequest& request) {
  return reinterpret_cast<const char*>(&request) + offsetof(EvalPublishedRequest, value);
}

int32_t Write(const Entry& entry, const EvalPublishedRequest& request, CExtConnectorBase& connector,
              ExtErrorBlock* err) {
  std::string error;
  if (entry.wellParent->Assign(connector, *entry.variable, entry.element, TextOf(request), error) !=
      0) {
    return Fail(err, "Error writing to " + entry.variable->Label + ": " + error);
  }
  return 0;
}

}  // namespace

int32_t PublishedVariables::Next(PublishedVariableRow& row,
                                 const std::vector<std::string>& components) {
  if (row.handle == INT32_MAX) return -1;
  const int32_t handle = row.handle + 1;
  const Entry entry = List.FindEntry(handle, components.size());
  if (entry.variable == nullptr) return -1;
  const std::string name = entry.variable->Label + EntrySuffix(entry, components);
  row.handle = handle;
  row.isWriteable = entry.variable->SimulatorItem.empty() ? 0 : 1;
  CopyBounded(row.fullName, entry.wellParent->WellName + ":" + name);
  CopyBounded(row.wellName, entry.wellParent->WellName);
  CopyBounded(row.shortName, name);
  row.code = entry.variable->Code;
  return 0;
}

int32_t PublishedVariables::Evaluate(EvalPublishedRequest& request, size_t componentCount,
                                     CExtConnectorBase& connector, StaticWellDataCollection& wells,
                                     const Notify& notify, ExtErrorBlock* err) {
  const Entry entry = List.FindEntry(request.handle, componentCount);
  if (entry.variable == nullptr) {
    return Fail(err, "Unexpected handle passed to EvalPublishedVariables");
  }
  if (request.isWrite == 0) return Read(entry, request, connector, err);
  if (entry.variable->SimulatorItem.empty()) {
    return Fail(err, "Attempting to set a read-only variable (" + entry.variable->Label + ")");
  }
  const StaticWellData* const well = wells.Find(entry.wellParent->WellName);
  if (well == nullptr) return 0;
  if (!well->Connected) return Write(entry, request, connector, err);
  notify("Could not set property on " + well->Name + " as this well is connected");
  return 0;
}

// The bound is the number of wells, and the well taken out is the one at the place of the handle,
// whichever well the variable belongs to: on purpose, since hosts count on it.
int32_t PublishedVariables::Delete(int32_t handle, size_t componentCount, ExtErrorBlock* err) {
  if (handle == -1) {
    List.RemoveAll();
    return 0;
  }
  if (handle < 0 || static_cast<size_t>(handle) >= List.Size()) {
    return Fail(err, "Bad handle passed to DelPublishedVariable()");
  }
  const Entry entry = List.FindEntry(handle, componentCount);
  if (entry.variable != nullptr) entry.wellParent->Remove(*entry.variable);
  List.TakeOut(static_cast<size_t>(handle));
  return 0;
}

void PublishedVariables::Prune(const StaticWellDataCollection& wells, bool componentsChanged) {
  const NameIndex index(wells.Items, &StaticWellData::Name);
  for (size_t i = List.Size(); i-- > 0;) {
    CExportedVariableWellParent& parent = List[i];
    if (!index.Find(parent.WellName)) {
      List.TakeOut(i);
      continue;
    }
    for (size_t v = parent.Variables.Size(); componentsChanged && v-- > 0;) {
      if (parent.Variables[v].Kind == kOnePerComponent) parent.Variables.TakeOut(v);
    }
  }
}

int32_t FillVariableNames(VariableNamesRecord& record) {
  CopyBounded(record.reservoirProductionRate, "Well[{~}].RES_VOLUME_PRODUCTION_RATE_FIELD");
  CopyBounded(record.reservoirInjectionRate, "Well[{~}].RES_VOLUME_INJECTION_RATE_FIELD");
  CopyBounded(record.reservoirProductionCumulative, "Well[{~}].RES_VOLUME_PRODUCTION_CUML_FIELD");
  CopyBounded(record.reservoirInjectionCumulative, "Well[{~}].RES_VOLUME_INJECTION_CUML_FIELD");
  CopyBounded(record.waterProductionRate, "Well[{~}].WATER_PRODUCTION_RATE_FIELD");
  CopyBounded(record.oilProductionRate, "Well[{~}].OIL_PRODUCTION_RATE_FIELD");
  CopyBounded(record.gasProductionRate, "Well[{~}].GAS_PRODUCTION_RATE_FIELD");
  CopyBounded(record.waterInjectionRate, "Well[{~}].WATER_INJECTION_RATE_FIELD");
  CopyBounded(record.gasInjectionRate, "Well[{~}].GAS_INJECTION_RATE_FIELD");
  record.reservoirRateFactor = 1.0;
  record.reservoirCumulativeFactor = 1.0;
  record.liquidRateFactor = 1.0;
  record.gasRateFactor = 1.0;
  return 0;
}

}  // namespace gantry
