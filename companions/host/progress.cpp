#include "host/progress.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "host/terminal.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr size_t kBarWidth = 40;

}  // namespace

Progress::Progress(UnitSystem units, bool showsTable, bool showsBar)
    : units_(units), showsTable_(showsTable), showsBar_(showsBar) {}

void Progress::ClearBar() {
  if (showsBar_) fmt::print(stderr, "\r\x1b[K");
}

void Progress::Started(const RunStart& start) {
  stepCount_ = start.stepCount;
  wells_ = start.wells;
  if (!showsTable_) return;
  fmt::print(UserOutput(), "{}\n{}, {} over {:g} days from {}{}\n\n", start.deck,
             Counted(start.wells.size(), "well"), Counted(start.stepCount, "step"), start.totalDays,
             ToText(start.start),
             start.unconnectedWells == 0
                 ? ""
                 : "; " + Counted(static_cast<size_t>(start.unconnectedWells), "well") +
                       " left to the simulator");
  fmt::print(UserOutput(), "{:>5} {:>10} {:>9} {:>10} {:>10} {:>10} {:>10} {:>10} {:>6}\n", "step",
             "date", "days", "oil", "water", "gas", "water inj", "gas inj", "open");
  const std::string_view liquid = UnitName(kLiquidRate, units_);
  const std::string_view gas = UnitName(kGasRate, units_);
  fmt::print(UserOutput(), "{:>5} {:>10} {:>9} {:>10} {:>10} {:>10} {:>10} {:>10} {:>6}\n", "", "",
             "", liquid, liquid, gas, liquid, gas, "wells");
}

void Progress::StepBegins(size_t step) {
  if (!showsBar_) return;
  const size_t filled = kBarWidth * step / std::max<size_t>(stepCount_, 1);
  fmt::print(stderr, "\r[{:#<{}}{:.<{}}] step {} of {}\x1b[K", "", filled, "", kBarWidth - filled,
             step + 1, stepCount_);
  std::fflush(stderr);
}

std::string Progress::Shown(double value, Quantity quantity, int digits) const {
  if (!std::isfinite(value)) return "?";
  return fmt::format("{:.{}f}", FromInternal(value, quantity, units_), digits);
}

void Progress::StepDone(const StepRecord& record) {
  if (!showsTable_) return;
  ClearBar();
  const FieldRates rates = SumWells(wells_, record);
  const auto liquid = [&](double rate) { return Shown(rate, kLiquidRate, 1); };
  const auto gas = [&](double rate) { return Shown(rate, kGasRate, 3); };
  const int open = rates.openProducers + rates.openInjectors;
  fmt::print(UserOutput(), "{:>5} {:>10} {:>9.1f} {:>10} {:>10} {:>10} {:>10} {:>10} {:>6}\n",
             record.step + 1, ToText(record.date), record.length, liquid(rates.produced.oil),
             liquid(rates.produced.water), gas(rates.produced.gas), liquid(rates.injected.water),
             gas(rates.injected.gas), open);
  std::fflush(UserOutput());
}

void Progress::Ended(const RunEnd& end) {
  ClearBar();
  if (!showsTable_ || !end.failure.empty()) return;
  const char* how = end.endedByUser        ? "ended by the user"
                    : end.endedBySimulator ? "the simulator has come to its own end"
                                           : "the run is complete";
  fmt::print(UserOutput(), "\n{}: {}\n", Counted(end.steps, "step"), how);
}

void Progress::Notice(const std::string& text) {
  ClearBar();
  if (showsTable_) fmt::print(UserOutput(), "{}\n", text);
}

void Progress::Warned(const RunWarning& warning) {
  ClearBar();
  std::fputs(fmt::format("fieldrun: warning: {}\n", ToText(warning)).c_str(), stderr);
}

}  // namespace gantry::fieldrun
