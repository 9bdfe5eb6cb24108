#include "fieldrun/results/run_file.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "fieldrun/case/input_file.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/results/result_folder.h"

namespace gantry::fieldrun {
namespace {

using Json = nlohmann::ordered_json;

/// A number of a tubing, by its key here and in a case file.
struct TubingNumber {
  const char* key;
  Quantity quantity;
  double TubingSpec::*number;
};
constexpr TubingNumber kTubingNumbers[] = {
    {"depth", Quantity::kLength, &TubingSpec::depth},
    {"diameter", Quantity::kDiameter, &TubingSpec::diameter},
    {"roughness", Quantity::kDiameter, &TubingSpec::roughness},
    {"wellhead_temperature", Quantity::kTemperature, &TubingSpec::wellheadTemperature},
    {"bottom_temperature", Quantity::kTemperature, &TubingSpec::bottomTemperature},
};

Json ToJson(const TubingSpec& tubing, UnitSystem units) {
  Json json{{"name", tubing.name}};
  for (const auto& [key, quantity, number] : kTubingNumbers) {
    json[key] = FromField(tubing.*number, quantity, units);
  }
  if (!tubing.vfp.empty()) json["vfp"] = tubing.vfp;
  if (tubing.length) json["length"] = FromField(*tubing.length, Quantity::kLength, units);
  return json;
}

TubingSpec TubingOf(const Json& json, UnitSystem units) {
  TubingSpec tubing;
  tubing.name = json.at("name");
  tubing.vfp = json.value("vfp", "");
  for (const auto& [key, quantity, number] : kTubingNumbers) {
    tubing.*number = ToField(json.at(key), quantity, units);
  }
  if (json.contains("length")) {
    tubing.length = ToField(json.at("length"), Quantity::kLength, units);
  }
  return tubing;
}

Json ToJson(const WellSpec& well, const CaseModel& model) {
  Json json{{"name", well.name}, {"kind", well.kind}, {"downtime", well.downtime}};
  if (well.tubing.empty()) return json;
  json["tubing"] = well.tubing;
  json["manifold_pressure"] =
      FromField(model.ManifoldPressureOf(well), Quantity::kGaugePressure, model.Units());
  return json;
}

WellSpec WellOf(const Json& json, UnitSystem units) {
  WellSpec well;
  well.name = json.at("name");
  well.kind = json.at("kind");
  well.downtime = json.at("downtime");
  well.tubing = json.value("tubing", "");
  if (json.contains("manifold_pressure")) {
    well.manifoldPressure = ToField(json.at("manifold_pressure"), Quantity::kGaugePressure, units);
  }
  return well;
}

Json ToJson(const std::vector<RunWarning>& warnings) {
  Json list = Json::array();
  for (const RunWarning& warning : warnings) {
    list.push_back({{"topic", warning.topic},
                    {"well", warning.well},
                    {"date", ToText(warning.date)},
                    {"text", warning.text}});
  }
  return list;
}

StoredRun RunOf(const Json& json) {
  StoredRun run;
  run.start.id = json.at("run");
  run.model.general.title = json.at("title");
  run.model.general.units = json.at("units") == "metric" ? 1 : 0;
  run.model.file = json.at("case");
  run.start.driver = json.at("driver");
  run.start.simulator = json.at("simulator");
  run.start.deck = json.at("deck");
  run.start.start = DateOf(json.at("start"));
  run.start.stepCount = json.at("steps");
  run.start.totalDays = json.at("days");
  const UnitSystem units = run.model.Units();
  for (const Json& tubing : json.at("tubings")) {
    run.model.tubings.push_back(TubingOf(tubing, units));
  }
  for (const Json& well : json.at("wells")) run.model.wells.push_back(WellOf(well, units));
  for (const WellSpec& well : run.model.wells) run.start.wells.push_back({&well, 0});
  for (const Json& warning : json.at("warnings")) {
    run.warnings.push_back(
        {warning.at("topic"), warning.at("well"), DateOf(warning.at("date")), warning.at("text")});
  }
  const Json& end = json.at("end");
  if (end.is_null()) return run;
  run.end = RunEnd{end.at("steps"), end.at("ended_by_simulator"), end.at("failure"), run.warnings,
                   end.at("ended_by_user")};
  return run;
}

}  // namespace

RunFile::RunFile(const std::string& folder, const CaseModel& model)
    : path_(folder + "/" + kRunFile), model_(model) {}

void RunFile::Write(const std::optional<RunEnd>& end) {
  Json json{{"run", start_.id},
            {"title", model_.general.title},
            {"units", model_.Units() == UnitSystem::kMetric ? "metric" : "field"},
            {"case", model_.file},
            {"driver", start_.driver},
            {"simulator", start_.simulator},
            {"deck", start_.deck},
            {"start", ToText(start_.start)},
            {"steps", start_.stepCount},
            {"days", start_.totalDays},
            {"tubings", Json::array()},
            {"wells", Json::array()},
            {"warnings", ToJson(warnings_)},
            {"end", nullptr}};
  for (const TubingSpec& tubing : model_.tubings) {
    json["tubings"].push_back(ToJson(tubing, model_.Units()));
  }
  for (const RunWell& well : start_.wells) json["wells"].push_back(ToJson(*well.spec, model_));
  if (end) {
    json["end"] = {{"steps", end->steps},
                   {"ended_by_simulator", end->endedBySimulator},
                   {"ended_by_user", end->endedByUser},
                   {"failure", end->failure}};
  }
  OutputFile file(path_);
  file.Write(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
  file.Finish();
  isChanged_ = false;
}

void RunFile::Started(const RunStart& start) {
  start_ = start;
  Write(std::nullopt);
}

void RunFile::StepDone(const StepRecord& /*record*/) {
  if (isChanged_) Write(std::nullopt);
}

void RunFile::Warned(const RunWarning& warning) {
  warnings_.push_back(warning);
  isChanged_ = true;
}

void RunFile::Ended(const RunEnd& end) { Write(end); }

StoredRun ReadRunFile(const std::string& folder) {
  const std::string path = folder + "/" + kRunFile;
  const std::string text = ReadInputFile(path);
  try {
    return RunOf(Json::parse(text));
  } catch (const nlohmann::json::exception& error) {
    throw CaseError(path, 0, std::string("this isn't of a run: ") + error.what());
  }
}

}  // namespace gantry::fieldrun
