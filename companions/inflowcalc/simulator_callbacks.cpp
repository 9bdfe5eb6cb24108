#include "inflowcalc/simulator_callbacks.h"

#include <array>
#include <string>

namespace gantry::inflow {
namespace {

template <class Call>
void CallOrThrow(const char* what, Call call) {
  std::array<char, IPR_TEXT_SIZE> text{};
  if (call(text.data()) == 0) return;
  text.back() = '\0';
  throw CallbackError(std::string(what) + ": " + text.data());
}

}  // namespace

void SimulatorCallbacks::Set(IPRElapsedDays elapsedDays, IPRRestart restart,
                             IPRImposeRate imposeRate, IPRAdvance advance, IPRReadInflow readInflow,
                             IPRReadCurrent readCurrent) {
  elapsedDays_ = elapsedDays;
  restart_ = restart;
  imposeRate_ = imposeRate;
  advance_ = advance;
  readInflow_ = readInflow;
  readCurrent_ = readCurrent;
}

bool SimulatorCallbacks::AreComplete() const {
  return elapsedDays_ && restart_ && imposeRate_ && advance_ && readInflow_ && readCurrent_;
}

void SimulatorCallbacks::Restart() const {
  CallOrThrow("restart", [&](char* text) { return restart_(model_, text); });
}

void SimulatorCallbacks::ImposeRate(int32_t well, double rate) const {
  CallOrThrow("impose rate", [&](char* text) { return imposeRate_(model_, well, rate, text); });
}

void SimulatorCallbacks::Advance(double days) const {
  const double before = ElapsedDays();
  CallOrThrow("advance", [&](char* text) { return advance_(model_, days, text); });
  if (!(ElapsedDays() > before)) throw CallbackError("advance: the simulator's time stands still");
}

void SimulatorCallbacks::ReadInflow(int32_t well, _tGetSetData& record) const {
  CallOrThrow("read inflow", [&](char* text) { return readInflow_(model_, well, &record, text); });
}

void SimulatorCallbacks::ReadCurrent(int32_t well, _tGetSetData& record) const {
  CallOrThrow("read current",
              [&](char* text) { return readCurrent_(model_, well, &record, text); });
}

}  // namespace gantry::inflow
