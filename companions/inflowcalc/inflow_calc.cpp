#include <cstdio>
#include <exception>
#include <memory>
#include <optional>

#include "gantry/inflow.h"
#include "inflowcalc/callers_file.h"
#include "inflowcalc/inflow_model.h"
#include "inflowcalc/state_block.h"

using gantry::inflow::CallersFile;
using gantry::inflow::InflowModel;

namespace {

constexpr int32_t kDone = 0;
constexpr int32_t kFailed = 1;

InflowModel* ModelOf(void* handle) { return static_cast<InflowModel*>(handle); }

/// Runs one operation on the model of a handle. No exception leaves the library.
template <class Operation>
int32_t OnModel(void* handle, Operation operation) noexcept {
  if (handle == nullptr) return kFailed;
  try {
    return operation(*ModelOf(handle)) ? kDone : kFailed;
  } catch (const std::exception&) {
    return kFailed;
  }
}

/// There is no place in the interface for a reason, and without a window none to show it.
bool CalculateOrTell(InflowModel& model) {
  if (!model.Callbacks().AreComplete()) return false;
  try {
    model.Calculate();
    return true;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "InflowCalc: the calculation has ended: %s\n", failure.what());
    return false;
  }
}

}  // namespace

void* CreateIPRModel(void* model) {
  try {
    return std::make_unique<InflowModel>(model).release();
  } catch (const std::exception&) {
    return nullptr;
  }
}

void DestroyIPRModel(void* handle) { std::unique_ptr<InflowModel>(ModelOf(handle)).reset(); }

void SetIPRCallbacks(void* handle, IPRElapsedDays elapsedDays, IPRRestart restart,
                     IPRImposeRate imposeRate, IPRAdvance advance, IPRReadInflow readInflow,
                     IPRReadCurrent readCurrent) {
  OnModel(handle, [&](InflowModel& model) {
    model.Callbacks().Set({elapsedDays, restart, imposeRate, advance, readInflow, readCurrent});
    return true;
  });
}

void StartIPRAddWell(void* handle) {
  OnModel(handle, [](InflowModel& model) {
    model.StartWells();
    return true;
  });
}

void AddIPRWell(void* handle, int32_t index, const char* name, bool isProducer, bool second) {
  OnModel(handle, [&](InflowModel& model) {
    if (name == nullptr) return false;
    model.AddWell({index, name, isProducer, second});
    return true;
  });
}

void EndIPRAddWell(void* /*handle*/) {}

int32_t TransformIPR(void* handle, const char* wellName, const void* stateRecord,
                     void* inflowRecord) {
  return OnModel(handle, [&](InflowModel& model) {
    if (wellName == nullptr || stateRecord == nullptr || inflowRecord == nullptr) return false;
    model.Transform(wellName, *static_cast<const _tGetSetData*>(stateRecord),
                    *static_cast<_tGetSetData*>(inflowRecord));
    return true;
  });
}

int32_t SetupIPR(void* /*window*/, void* handle) { return OnModel(handle, CalculateOrTell); }

int32_t SaveIPR(void* handle, intptr_t file) {
  return OnModel(handle,
                 [&](InflowModel& model) { return SaveState(model.Ratios(), CallersFile(file)); });
}

int32_t LoadIPR(void* handle, intptr_t file) {
  return OnModel(handle, [&](InflowModel& model) {
    std::optional<gantry::inflow::WellRatios> ratios = gantry::inflow::LoadState(CallersFile(file));
    if (ratios) model.SetRatios(std::move(*ratios));
    return ratios.has_value();
  });
}
