#include "fieldrun/results/result_reader.h"

#include <algorithm>
#include <limits>
#include <map>
#include <sstream>

#include <fmt/format.h>

#include "fieldrun/case/input_file.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/run/field_totals.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr const char* kLift = "lift pressure";

std::vector<std::string> SplitRow(const std::string& line) {
  std::vector<std::string> fields(1);
  bool isQuoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    const bool isDoubled = isQuoted && line.compare(i, 2, "\"\"") == 0;
    if (isDoubled) fields.back() += line[i++];
    if (!isDoubled && line[i] == '"') isQuoted = !isQuoted;
    if (!isDoubled && line[i] == ',' && !isQuoted) fields.emplace_back();
    if (!isDoubled && line[i] != '"' && (line[i] != ',' || isQuoted)) fields.back() += line[i];
  }
  return fields;
}

/// A table of a run, row by row. Its columns are known by their names without units.
class Rows {
 public:
  Rows(const std::string& path, const StoredRun& run)
      : path_(path), run_(run), text_(ReadInputFile(path)) {
    std::string line;
    if (ReadLine(line)) columns_ = SplitRow(line);
    for (size_t i = 0; i < columns_.size(); ++i) {
      places_.emplace(columns_[i].substr(0, columns_[i].find(" (")), i);
    }
    Next();
  }

  /// False at the end, which a row that was cut off is too.
  bool Next() {
    std::string line;
    isAtEnd_ = !ReadLine(line);
    if (isAtEnd_) return false;
    fields_ = SplitRow(line);
    if (fields_.size() != columns_.size()) Fail("the row has other columns than the heading");
    if (Text("run") != run_.start.id) Fail("the row is of another run than run.json");
    return true;
  }
  bool IsAtEnd() const { return isAtEnd_; }

  bool Has(const char* column) const { return places_.contains(column); }
  const std::string& Text(const char* column) const {
    const auto found = places_.find(column);
    if (found == places_.end()) Fail(fmt::format("there is no column \"{}\"", column));
    return fields_[found->second];
  }
  /// What stands empty isn't known.
  double Number(const char* column, Quantity quantity = kNone) const {
    const std::string& text = Text(column);
    if (text.empty()) return std::numeric_limits<double>::quiet_NaN();
    return ToField(ReadDouble(text), quantity, run_.model.Units());
  }
  Rates RatesOf(const std::string& prefix, Quantity liquid, Quantity gas) const {
    return {Number((prefix + "oil").c_str(), liquid), Number((prefix + "water").c_str(), liquid),
            Number((prefix + "gas").c_str(), gas)};
  }
  InflowPoint Point(const std::string& prefix) const {
    return {Number((prefix + "pressure").c_str(), kGaugePressure),
            RatesOf(prefix, kLiquidRate, kGasRate)};
  }
  size_t Step() const { return static_cast<size_t>(Number("step")) - 1; }

  [[noreturn]] void Fail(const std::string& reason) const { throw CaseError(path_, line_, reason); }

 private:
  bool ReadLine(std::string& line) {
    ++line_;
    const bool isWhole = std::getline(text_, line) && !text_.eof();
    if (line.ends_with('\r')) line.pop_back();  // as a spreadsheet may have left it
    return isWhole;
  }

  std::string path_;
  const StoredRun& run_;
  std::istringstream text_;
  int line_ = 0;
  std::vector<std::string> columns_;
  std::map<std::string, size_t, std::less<>> places_;
  std::vector<std::string> fields_;
  bool isAtEnd_ = false;
};

/// The tables of a run beside each other.
class Replay {
 public:
  Replay(const std::string& folder, const StoredRun& run)
      : run_(run),
        wells_(folder + "/" + kWellsFile, run),
        inflow_(folder + "/" + kInflowFile, run),
        events_(folder + "/" + kEventsFile, run),
        field_(folder + "/" + kFieldFile, run) {
    for (size_t i = 0; i < run.start.wells.size(); ++i) {
      places_.emplace(run.start.wells[i].spec->name, i);
    }
  }

  bool HasStep() const { return !field_.IsAtEnd(); }
  StepRecord NextStep();

 private:
  WellStep& WellOf(StepRecord& record, const Rows& rows) const;
  void ReadWell(WellStep& well) const;
  void ReadEvent(StepRecord& record) const;
  void ReadGroups(StepRecord& record) const;

  const StoredRun& run_;
  Rows wells_;
  Rows inflow_;
  Rows events_;
  Rows field_;
  std::map<std::string, size_t> places_;
};

WellStep& Replay::WellOf(StepRecord& record, const Rows& rows) const {
  const auto found = places_.find(rows.Text("well"));
  if (found == places_.end()) rows.Fail("run.json names no well of this name");
  return record.wells[found->second];
}

void Replay::ReadWell(WellStep& well) const {
  const InflowPoint decided = wells_.Point("");
  well.point = {wells_.Text("open") == "1", decided.pressure, decided.rates,
                wells_.Text("limited by")};
  if (!wells_.Text("reported pressure").empty()) well.reported = wells_.Point("reported ");
  well.total = wells_.RatesOf("total ", kLiquidVolume, kGasVolume);
  well.isTotalMeasured = wells_.Text("totals by") == "simulator";
  well.uptime = wells_.Number("uptime");
  well.tubing = wells_.Text("tubing");
  if (well.tubing.empty()) return;
  well.manifoldPressure = wells_.Number("manifold pressure", kGaugePressure);
  well.artificialLift = wells_.Number("artificial lift");
  well.gravities = {wells_.Number("oil gravity"), wells_.Number("gas gravity"),
                    wells_.Number("water gravity")};
}

void Replay::ReadEvent(StepRecord& record) const {
  record.events.push_back({DateOf(events_.Text("date")), events_.Text("cause"),
                           events_.Text("target"), events_.Text("name"), events_.Text("what"),
                           events_.Text("reason")});
}

// What stands between one group and the next, whose names may hold semicolons.
constexpr std::string_view kEndOfGroup = " without it); ";

// "plant: liquid (1320 without it); ..."
void Replay::ReadGroups(StepRecord& record) const {
  std::string text = field_.Text("group limits");
  for (size_t end; !text.empty(); text.erase(0, end)) {
    end = std::min(text.find(kEndOfGroup), text.size());
    const std::string one = text.substr(0, end);
    const size_t number = one.rfind(" (");
    const size_t limit = one.rfind(": ", number);
    if (number == std::string::npos || limit == std::string::npos) {
      field_.Fail("the group limits aren't as they are written");
    }
    GroupLimitReport& group = record.groups.emplace_back();
    group.group = one.substr(0, limit);
    group.limit = one.substr(limit + 2, number - limit - 2);
    group.before =
        ToField(ReadDouble(one.substr(number + 2)), QuantityOf(group), run_.model.Units());
    end = std::min(end + kEndOfGroup.size(), text.size());
  }
}

StepRecord Replay::NextStep() {
  StepRecord record;
  record.step = field_.Step();
  record.date = DateOf(field_.Text("date"));
  record.days = field_.Number("days");
  record.length = field_.Number("length");
  record.wells.resize(places_.size());
  for (; !wells_.IsAtEnd() && wells_.Step() == record.step; wells_.Next()) {
    ReadWell(WellOf(record, wells_));
  }
  for (; !inflow_.IsAtEnd() && inflow_.Step() == record.step; inflow_.Next()) {
    WellStep& well = WellOf(record, inflow_);
    well.inflow.push_back(inflow_.Point(""));
    if (!inflow_.Has(kLift)) continue;  // as an earlier fieldrun wrote it
    well.lift.push_back(inflow_.Number(kLift, kGaugePressure));
  }
  for (; !events_.IsAtEnd() && events_.Step() == record.step; events_.Next()) ReadEvent(record);
  ReadGroups(record);
  field_.Next();
  return record;
}

// A run of an earlier fieldrun has no such table.
void ReplayTimes(const std::string& folder, const StoredRun& run, RunListener& listener) {
  const std::string path = folder + "/" + kProfileFile;
  if (!IsFile(path)) return;
  for (Rows rows(path, run); !rows.IsAtEnd(); rows.Next()) {
    StepTimes times;
    for (const TimePart& part : kTimeParts) times.*part.seconds = rows.Number(part.name);
    const bool isStart = rows.Text("step") == "0";
    listener.Timed(isStart ? std::nullopt : std::optional(rows.Step()), times);
  }
}

}  // namespace

void ReplayRun(const std::string& folder, const StoredRun& run, RunListener& listener) {
  listener.Started(run.start);
  for (const RunWarning& warning : run.warnings) listener.Warned(warning);
  for (Replay replay(folder, run); replay.HasStep();) listener.StepDone(replay.NextStep());
  ReplayTimes(folder, run, listener);
  if (run.end) listener.Ended(*run.end);
}

}  // namespace gantry::fieldrun
