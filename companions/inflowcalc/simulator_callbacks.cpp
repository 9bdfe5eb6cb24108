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

bool SimulatorCallbacks::AreComplete() const {
  return calls_.elapsedDays && calls_.restart && calls_.imposeRate && calls_.advance &&
         calls_.readInflow && calls_.readCurrent;
}

void SimulatorCallbacks::Restart() const {
  CallOrThrow("restart", [&](char* text) { return calls_.restart(model_, text); });
}

void SimulatorCallbacks::ImposeRate(int32_t well, double rate) const {
  CallOrThrow("impose rate",
              [&](char* text) { return calls_.imposeRate(model_, well, rate, text); });
}

void SimulatorCallbacks::Advance(double days) const {
  const double before = ElapsedDays();
  CallOrThrow("advance", [&](char* text) { return calls_.advance(model_, days, text); });
  if (!(ElapsedDays() > before)) throw CallbackError("advance: the simulator's time stands still");
}

void SimulatorCallbacks::ReadInflow(int32_t well, _tGetSetData& record) const {
  CallOrThrow("read inflow",
              [&](char* text) { return calls_.readInflow(model_, well, &record, text); });
}

void SimulatorCallbacks::ReadCurrent(int32_t well, _tGetSetData& record) const {
  CallOrThrow("read current",
              [&](char* text) { return calls_.readCurrent(model_, well, &record, text); });
}

}  // namespace gantry::inflow
