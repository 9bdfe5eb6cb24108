#include "flowlink/flow_run.h"

#include <algorithm>
#include <fstream>

#include "flowlink/flow_items.h"
#include "flowlink/flow_log.h"
#include "flowlink/link_fault.h"
#include "flowlink/link_script.h"

namespace gantry::flowlink {

namespace {

constexpr const char* kScriptName = "flowlink_link.py";

/// What flow is run with: without these a fork of it hangs, for want of its threads, or can't be
/// told how long its one step is to be.
const std::vector<std::string> kNeededOptions = {
    "--threads-per-process=1", "--enable-async-ecl-output=false", "--enable-tuning=true"};

constexpr std::uintmax_t kLeastSpace = 1 << 20;  // bytes

void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  if (!(out << text << std::flush)) throw LinkFault("can't write " + file.string());
}

}  // namespace

FlowRun::FlowRun(const LinkSettings& settings, const std::filesystem::path& folder,
                 const std::string& name, RunBegin begin)
    : name_(name),
      begin_(std::move(begin)),
      deck_(ComposeDeck(settings, kScriptName, SummaryVectors(), begin_)),
      process_(Start(settings, folder)),
      link_(process_, SummaryVectors(), deck_.units, settings.secondsForQuestion),
      folder_(folder),
      results_({ResultFile(folder / (name + ".UNRST")), ResultFile(folder / (name + ".UNSMRY"))}) {}

void FlowRun::Advance(const std::string& keywords, const NamedLimits& numbers) {
  link_.Advance(keywords, numbers);
  CheckResults(std::span(results_).first(1));
}

void FlowRun::Finish() {
  link_.Finish();
  CheckResults(results_);
}

void FlowRun::CheckResults(std::span<ResultFile> files) const {
  if (std::ranges::all_of(files, [](ResultFile& file) { return file.IsWhole(); })) return;
  std::error_code error;
  const auto space = std::filesystem::space(folder_, error);
  const bool isFull = !error && space.available < kLeastSpace;
  throw LinkFault(
      "flow couldn't write its results in " + folder_.string() + " in full" +
      (isFull ? ": the disk is full" : "; its log is " + (folder_ / (name_ + ".log")).string()));
}

FlowProcess FlowRun::Start(const LinkSettings& settings, const std::filesystem::path& folder) {
  WriteFile(folder / kScriptName, kLinkScript);
  WriteFile(folder / (name_ + ".DATA"), deck_.text.Text());
  std::vector<std::string> arguments = {settings.program};
  arguments.insert(arguments.end(), kNeededOptions.begin(), kNeededOptions.end());
  arguments.insert(arguments.end(), settings.options.begin(), settings.options.end());
  arguments.push_back(name_ + ".DATA");
  return {arguments, folder, name_ + ".log",
          [this](const std::string& reason) { return PlaceOf(reason); }};
}

std::string FlowRun::PlaceOf(const std::string& reason) const {
  const auto line = LineOfError(reason, deck_.text.Text());
  const auto place = line ? deck_.text.PlaceOf(*line) : std::nullopt;
  return place ? place->Text() : "";
}

double FlowRun::EndOf(int report) const {
  const int before = begin_.restart ? begin_.restart->report : 0;
  return deck_.ends.at(static_cast<size_t>(report - before - 1));
}

bool FlowRun::HasOrdersAtStop() const {
  return std::ranges::binary_search(deck_.orders, EndOf(link_.Stop().report));
}

std::optional<RestartPoint> FlowRun::WayToStop() const {
  if (IsOnlyAsked()) return begin_.restart;
  const int report = link_.Stop().report;
  return RestartPoint{name_, report, EndOf(report)};
}

}  // namespace gantry::flowlink
