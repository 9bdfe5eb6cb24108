#include "fieldrun/verbs/progress.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/result_folder.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr size_t kBarWidth = 24;  // so that all fits into 80 columns
constexpr size_t kMostWarnings = 20;

/// What one event does to several wells is told once: "P1, P2, P3 and 9 more: shut".
void PrintEvents(const std::vector<EventReport>& events) {
  constexpr size_t kMostNames = 4;
  for (size_t first = 0, next = 0; first < events.size(); first = next) {
    EventReport all = events[first];
    const auto isSame = [&](const EventReport& event) {
      return event.target == all.target && event.what == all.what && event.reason == all.reason;
    };
    for (next = first + 1; next < events.size() && isSame(events[next]); ++next) {
      if (next - first < kMostNames) all.name += ", " + events[next].name;
    }
    if (next - first > kMostNames)
      all.name += fmt::format(" and {} more", next - first - kMostNames);
    fmt::print(UserOutput(), "      {:>10}  {}\n", ToText(all.date), ToText(all));
  }
}

/// "0:07", "12:40", "3:05:00".
std::string Span(double seconds) {
  const auto whole = static_cast<int64_t>(std::max(seconds, 0.0));
  const int64_t minutes = whole / 60;
  if (minutes < 60) return fmt::format("{}:{:02}", minutes, whole % 60);
  return fmt::format("{}:{:02}:{:02}", minutes / 60, minutes % 60, whole % 60);
}

}  // namespace

std::string ProgressBar(size_t step, size_t stepCount, const Date& date, double before,
                        double within, size_t firstStep) {
  const size_t filled = kBarWidth * step / std::max<size_t>(stepCount, 1);
  std::string text =
      fmt::format("[{:#<{}}{:.<{}}] step {} of {}  {}  {}", "", filled, "", kBarWidth - filled,
                  step + 1, stepCount, ToText(date), Span(before + within));
  if (step == firstStep) return text;
  const double left =
      before / static_cast<double>(step - firstStep) * static_cast<double>(stepCount - step);
  return text + fmt::format(", {} left", Span(left - within));
}

Progress::Progress(UnitSystem units, bool showsTable, bool showsBar)
    : units_(units), showsTable_(showsTable), showsBar_(showsBar) {}

Progress::~Progress() { StopBar(); }

void Progress::Draw() const {
  const auto seconds = [](Clock::duration time) {
    return std::chrono::duration<double>(time).count();
  };
  const std::string bar = ProgressBar(step_, stepCount_, date_, seconds(stepBegan_ - runBegan_),
                                      seconds(Clock::now() - stepBegan_), firstStep_);
  std::fputs(("\r" + bar + "\x1b[K").c_str(), stderr);
  std::fflush(stderr);
}

void Progress::DrawEachSecond(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    wake_.wait_for(lock, stop, std::chrono::seconds(1), [] { return false; });
    if (isShown_ && !stop.stop_requested()) Draw();
  }
}

void Progress::StopBar() {
  Aside([this] { isShown_ = false; });
  drawer_ = {};
}

void Progress::Aside(const std::function<void()>& action) {
  const std::lock_guard lock(mutex_);
  if (isShown_) std::fputs("\r\x1b[K", stderr);
  action();
  if (!isShown_) return;
  std::fflush(UserOutput());
  Draw();
}

void Progress::Started(const RunStart& start) {
  stepCount_ = start.stepCount;
  firstStep_ = start.doneSteps;
  wells_ = start.wells;
  if (!showsTable_) return;
  fmt::print(UserOutput(), "{}\n{}, {} over {:g} days from {}{}\n{}\n", start.deck,
             Counted(start.wells.size(), "well"), Counted(start.stepCount, "step"), start.totalDays,
             ToText(start.start),
             start.unconnectedWells == 0
                 ? ""
                 : "; " + Counted(static_cast<size_t>(start.unconnectedWells), "well") +
                       " left to the simulator",
             start.doneSteps == 0 ? "" : fmt::format("Going on after step {}\n", start.doneSteps));
  fmt::print(UserOutput(), "{:>5} {:>10} {:>9} {:>10} {:>10} {:>10} {:>10} {:>10} {:>6}\n", "step",
             "date", "days", "oil", "water", "gas", "water inj", "gas inj", "open");
  const std::string_view liquid = UnitName(kLiquidRate, units_);
  const std::string_view gas = UnitName(kGasRate, units_);
  fmt::print(UserOutput(), "{:>5} {:>10} {:>9} {:>10} {:>10} {:>10} {:>10} {:>10} {:>6}\n", "", "",
             "", liquid, liquid, gas, liquid, gas, "wells");
}

void Progress::StepBegins(size_t step, const Date& date) {
  if (!showsBar_) return;
  const std::lock_guard lock(mutex_);
  step_ = step;
  date_ = date;
  stepBegan_ = Clock::now();
  if (!isShown_) {
    isShown_ = true;
    runBegan_ = stepBegan_;
    drawer_ = std::jthread([this](const std::stop_token& stop) { DrawEachSecond(stop); });
  }
  Draw();
}

std::string Progress::Shown(double value, Quantity quantity, int digits) const {
  if (!std::isfinite(value)) return "?";
  return fmt::format("{:.{}f}", FromField(value, quantity, units_), digits);
}

void Progress::PrintRow(const StepRecord& record) const {
  PrintEvents(record.events);
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

void Progress::StepDone(const StepRecord& record) {
  if (showsTable_) Aside([&] { PrintRow(record); });
}

void Progress::TellUnshownWarnings() const {
  if (warnings_ <= kMostWarnings) return;
  const std::string text = fmt::format("fieldrun: {} more; {} has them all\n",
                                       Counted(warnings_ - kMostWarnings, "warning"), kRunFile);
  std::fputs(text.c_str(), stderr);
}

void Progress::Ended(const RunEnd& end) {
  StopBar();
  TellUnshownWarnings();
  if (!showsTable_ || !end.failure.empty()) return;
  const char* how = end.endedByUser        ? "ended by the user"
                    : end.endedBySimulator ? "the simulator has come to its own end"
                                           : "the run is complete";
  fmt::print(UserOutput(), "\n{}: {}\n", Counted(end.steps, "step"), how);
}

void Progress::Notice(const std::string& text) {
  if (showsTable_) Aside([&] { fmt::print(UserOutput(), "{}\n", text); });
}

void Progress::Warned(const RunWarning& warning) {
  if (++warnings_ > kMostWarnings) return;
  // A terminal that is gone ends no run.
  Aside(
      [&] { std::fputs(fmt::format("fieldrun: warning: {}\n", ToText(warning)).c_str(), stderr); });
}

}  // namespace gantry::fieldrun
