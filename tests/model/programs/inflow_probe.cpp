#include "inflow_probe.h"

#include <cmath>
#include <memory>
#include <sstream>

#include "gantry/inflow.h"

namespace {

InflowProbe probe;

void Note(const std::string& call) { probe.calls.push_back(call); }

}  // namespace

extern "C" {

InflowProbe* TheInflowProbe() { return &probe; }

void* CreateIPRModel(void* model) {
  probe.model = model;
  return &probe;
}

void DestroyIPRModel(void*) { Note("destroy"); }

void SetIPRCallbacks(void*, IPRElapsedDays elapsedDays, IPRRestart restart,
                     IPRImposeRate imposeRate, IPRAdvance advance, IPRReadInflow readInflow,
                     IPRReadCurrent readCurrent) {
  probe.elapsedDays = elapsedDays;
  probe.restart = restart;
  probe.imposeRate = imposeRate;
  probe.advance = advance;
  probe.readInflow = readInflow;
  probe.readCurrent = readCurrent;
}

void StartIPRAddWell(void*) { Note("wells:"); }

void AddIPRWell(void*, int32_t index, const char* name, bool isProducer, bool second) {
  std::ostringstream text;
  text << index << ' ' << name << (isProducer ? " producer" : " injector")
       << (second ? " second" : "");
  Note(text.str());
}

void EndIPRAddWell(void*) { Note("end"); }

int32_t TransformIPR(void*, const char* wellName, const void* stateRecord, void* inflowRecord) {
  const auto& state = *static_cast<const _tGetSetData*>(stateRecord);
  auto& inflow = *static_cast<_tGetSetData*>(inflowRecord);
  std::ostringstream text;
  text << "transform " << wellName << ' ' << state.size << ' ' << state.pressure[0] << ' '
       << state.oilRate[0];
  Note(text.str());
  char reason[IPR_TEXT_SIZE] = {};
  if (probe.restartsInside != 0) probe.restart(probe.model, reason);
  if (const int32_t other = probe.readsInside; other >= 0) {
    probe.readsInside = -1;
    const auto record = std::make_unique<_tGetSetData>();
    probe.readInflow(probe.model, other, record.get(), reason);
    Note("oil of its state is still " + std::to_string(std::lround(state.oilRate[0])));
  }
  if (probe.pointsAfter < 0) return 0;
  inflow.pointCount = probe.pointsAfter;
  inflow.oilRate[0] *= 2.0;
  return 0;
}

int32_t SetupIPR(void*, void*) { return 0; }

int32_t SaveIPR(void*, intptr_t) {
  Note("save");
  return 0;
}

int32_t LoadIPR(void*, intptr_t) {
  Note("load");
  return 0;
}

}  // extern "C"
