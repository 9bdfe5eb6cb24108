#include "fieldrun/results/resume_file.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <stdexcept>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/input_file.h"
#include "fieldrun/results/json_text.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/results/result_folder.h"
#include "platform/file_path.h"
#include "platform/live_file.h"
#include "text/checksum.h"

namespace gantry::fieldrun {
namespace {

constexpr int kVersion = 1;

// Null stands for what isn't known.
double NumberOf(const Json& json) {
  return json.is_null() ? std::numeric_limits<double>::quiet_NaN() : json.get<double>();
}

Json ToJson(const Rates& rates) { return {rates.oil, rates.water, rates.gas}; }

Rates RatesOf(const Json& json) {
  return {NumberOf(json.at(0)), NumberOf(json.at(1)), NumberOf(json.at(2))};
}

Json ToJson(const WellLast& last, const WellCount& count) {
  Json json{{"open", last.isOpen},          {"uptime", last.uptime},
            {"reported", nullptr},          {"total", ToJson(last.total)},
            {"doubt", count.doubt},         {"before", ToJson(count.before)},
            {"count", ToJson(count.count)}, {"counted", ToJson(count.total)},
            {"rates", ToJson(count.rates)}, {"checked", count.checked}};
  if (last.reported) {
    json["reported"] = {{"pressure", last.reported->pressure},
                        {"rates", ToJson(last.reported->rates)}};
  }
  return json;
}

WellLast LastOf(const Json& json) {
  WellLast last{json.at("open"), NumberOf(json.at("uptime")), {}, RatesOf(json.at("total"))};
  const Json& reported = json.at("reported");
  if (!reported.is_null()) {
    last.reported = {NumberOf(reported.at("pressure")), RatesOf(reported.at("rates"))};
  }
  return last;
}

WellCount CountOf(const Json& json) {
  return {json.at("doubt"),          RatesOf(json.at("before")),
          RatesOf(json.at("count")), RatesOf(json.at("counted")),
          RatesOf(json.at("rates")), NumberOf(json.at("checked"))};
}

Json ToJson(const Happening& happening) {
  if (happening.event) return {{"event", *happening.event}};
  return {{"well", happening.well}, {"limit", happening.reason}};
}

Happening HappeningOf(const Json& json) {
  if (json.contains("event")) return {json.at("event").get<size_t>(), 0, {}};
  return {std::nullopt, json.at("well"), json.at("limit")};
}

RunMemory MemoryOf(const Json& json) {
  RunMemory memory{json.at("run"),
                   DateOf(json.at("start")),
                   json.at("simulator_days"),
                   json.at("steps"),
                   {},
                   {},
                   {}};
  for (const Json& well : json.at("wells")) {
    memory.last.push_back(LastOf(well));
    memory.counts.push_back(CountOf(well));
  }
  for (const Json& happening : json.at("happened")) {
    memory.happenings.push_back(HappeningOf(happening));
  }
  return memory;
}

/// Empty for a file that isn't there.
std::string ChecksumOf(const std::string& path) {
  return IsFile(path) ? Checksum(ReadInputFile(path)) : "";
}

std::string Absolute(const std::string& path) {
  return platform::NameOf(std::filesystem::absolute(platform::PathOf(path)).lexically_normal());
}

}  // namespace

ResumeFile::ResumeFile(const std::string& folder, const CaseModel& model)
    : path_(folder + "/" + kResumeFile) {
  run_.caseFile = Absolute(model.file);
  std::vector<std::string> files{run_.caseFile, model.simulator.deck};
  for (const TubingSpec& tubing : model.tubings) files.push_back(tubing.vfp);
  for (const std::string& file : files) {
    if (!file.empty()) run_.files.emplace(file, ChecksumOf(file));
  }
}

void ResumeFile::Write(const RunMemory& memory, const std::string& program, size_t warnings) {
  Json json{{"version", kVersion},
            {"run", memory.id},
            {"case", run_.caseFile},
            {"program", program},
            {"files", run_.files},
            {"start", ToText(memory.start)},
            {"simulator_days", memory.simulatorDays},
            {"steps", memory.steps},
            {"warnings", warnings},
            {"happened", Json::array()},
            {"wells", Json::array()}};
  for (const Happening& happening : memory.happenings) {
    json["happened"].push_back(ToJson(happening));
  }
  for (size_t i = 0; i < memory.last.size(); ++i) {
    json["wells"].push_back(ToJson(memory.last[i], memory.counts[i]));
  }
  const std::error_code error = platform::ReplaceLiveFile(platform::PathOf(path_), JsonText(json));
  if (error) throw std::runtime_error(WriteFailure(path_, error.value()));
}

LeftRun ReadResumeFile(const std::string& folder) {
  const std::string path = folder + "/" + kResumeFile;
  if (!IsFile(path)) {
    throw CaseError(path, 0,
                    "this isn't there: no step of the run is whole, or an earlier fieldrun or a "
                    "program in Python has made it; run the case anew");
  }
  const std::string text = ReadInputFile(path);
  try {
    const Json json = Json::parse(text);
    const int version = json.at("version");
    if (version != kVersion) {
      throw CaseError(path, 0,
                      fmt::format("this is of version {}, of another fieldrun; this one reads "
                                  "version {}",
                                  version, kVersion));
    }
    return {MemoryOf(json), json.at("warnings"), json.at("case"), json.at("program"),
            json.at("files").get<std::map<std::string, std::string>>()};
  } catch (const nlohmann::json::exception& error) {
    throw CaseError(path, 0, std::string("this isn't of a run: ") + error.what());
  }
}

std::vector<std::string> ChangedFiles(const LeftRun& run) {
  std::vector<std::string> changed;
  for (const auto& [file, checksum] : run.files) {
    if (ChecksumOf(file) != checksum) changed.push_back(file);
  }
  return changed;
}

}  // namespace gantry::fieldrun
