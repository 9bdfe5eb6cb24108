#include "fieldrun/results/run_file.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "fieldrun/case/input_file.h"
#include "fieldrun/results/json_text.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/results/result_folder.h"

namespace gantry::fieldrun {
namespace {

Json ToJson(const WellSpec& well) { return {{"name", well.name}, {"kind", well.kind}}; }

WellSpec WellOf(const Json& json) {
  WellSpec well;
  well.name = json.at("name");
  well.kind = json.at("kind");
  return well;
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
  for (const Json& well : json.at("wells")) run.model.wells.push_back(WellOf(well));
  for (const WellSpec& well : run.model.wells) run.start.wells.push_back({&well, 0});
  for (const Json& group : json.value("groups", Json::array())) {
    GroupSpec& read = run.model.groups.emplace_back();
    read.name = group.at("name");
    read.wells = group.at("wells").get<std::vector<std::string>>();
  }
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
            {"wells", Json::array()},
            {"groups", Json::array()},
            {"warnings", Json::array()},
            {"end", nullptr}};
  for (const RunWell& well : start_.wells) json["wells"].push_back(ToJson(*well.spec));
  for (const RunWarning& warning : warnings_) json["warnings"].push_back(ToJson(warning));
  for (const GroupSpec& group : model_.groups) {
    json["groups"].push_back({{"name", group.name}, {"wells", group.wells}});
  }
  if (end) {
    json["end"] = {{"steps", end->steps},
                   {"ended_by_simulator", end->endedBySimulator},
                   {"ended_by_user", end->endedByUser},
                   {"failure", end->failure}};
  }
  WriteWhole(path_, JsonText(json, 2));
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
