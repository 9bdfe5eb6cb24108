#include "fieldrun/results/watched_report.h"

#include <filesystem>

#include <fmt/format.h>

#include "fieldrun/results/output_file.h"
#include "fieldrun/results/report_html.h"
#include "fieldrun/results/result_folder.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

constexpr int kShareOfTime = 10;  // one part in so many goes into writing

}  // namespace

WatchedReport::WatchedReport(const CaseModel& model, RunHistory& history)
    : model_(model), history_(history) {
  history.isGoingOn = true;
}

WatchedReport::~WatchedReport() {
  std::error_code ignored;
  std::filesystem::remove(platform::PathOf(model_.general.output + "/" + kWatchFile), ignored);
}

void WatchedReport::WritePage() const {
  WriteWhole(model_.general.output + "/" + kReportFile,
             ComposeReport(model_, history_, kWatchFile));
}

void WatchedReport::WriteStamp() const {
  using std::chrono::system_clock;
  const auto now =
      std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch());
  WriteWhole(model_.general.output + "/" + kWatchFile,
             fmt::format("gantryRun({{id: \"{}\", steps: {}, time: {}}});\n", history_.start.id,
                         history_.field.size(), now.count()));
}

// A page finds its stamp from the beginning on.
void WatchedReport::Started(const RunStart& /*start*/) {
  WriteStamp();
  WritePage();
}

// And each stamp its page.
void WatchedReport::StepDone(const StepRecord& /*record*/) {
  const Clock::time_point began = Clock::now();
  if (began < isDue_) return;
  try {
    WritePage();
    WriteStamp();
  } catch (const std::exception&) {
    // a full disk, which tables and last report tell of
  }
  const Clock::time_point now = Clock::now();
  isDue_ = now + (kShareOfTime - 1) * (now - began);
}

}  // namespace gantry::fieldrun
