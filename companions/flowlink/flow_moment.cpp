#include "flowlink/flow_moment.h"

namespace gantry::flowlink {
namespace {

using nlohmann::json;

json ToJson(const std::optional<double>& value) { return value ? json(*value) : json(nullptr); }

std::optional<double> NumberOf(const json& text) {
  if (text.is_null()) return std::nullopt;
  return text.get<double>();
}

json ToJson(const PastStop& stop) {
  json text{{"days", stop.days}, {"way", nullptr}};
  if (stop.way) {
    text["way"] = {
        {"case", stop.way->caseName}, {"report", stop.way->report}, {"days", stop.way->days}};
  }
  return text;
}

PastStop StopOf(const json& text) {
  PastStop stop{text.at("days"), std::nullopt};
  const json& way = text.at("way");
  if (!way.is_null()) stop.way = RestartPoint{way.at("case"), way.at("report"), way.at("days")};
  return stop;
}

json ToJson(const HostControls& controls) {
  json limits = json::array();
  for (const auto& limit : controls.constraints) {
    limits.push_back(json::array({limit.item, limit.value, limit.setter}));
  }
  return {{"limits", limits},
          {"status", controls.status},
          {"uptime", ToJson(controls.uptime)},
          {"wants_most", controls.wantsMost}};
}

HostControls ControlsOf(const json& text) {
  HostControls controls;
  for (const json& limit : text.at("limits")) {
    controls.constraints.push_back({limit.at(0), limit.at(1), limit.at(2)});
  }
  controls.status = text.at("status");
  controls.uptime = NumberOf(text.at("uptime"));
  controls.wantsMost = text.at("wants_most");
  return controls;
}

}  // namespace

json ToJson(const FlowMoment& moment) {
  json stops = json::array();
  json wells = json::array();
  for (const PastStop& stop : moment.stops) stops.push_back(ToJson(stop));
  for (size_t i = 0; i < moment.controls.size(); ++i) {
    json well = ToJson(moment.controls[i]);
    well["shut_by_flow"] = ToJson(moment.shutByFlow[i]);
    well["is_told"] = bool{moment.isTold[i]};
    wells.push_back(std::move(well));
  }
  return {{"runs", moment.runs}, {"stops", stops}, {"wells", wells}};
}

FlowMoment FlowMomentOf(const json& text) {
  FlowMoment moment;
  moment.runs = text.at("runs");
  for (const json& stop : text.at("stops")) moment.stops.push_back(StopOf(stop));
  for (const json& well : text.at("wells")) {
    moment.controls.push_back(ControlsOf(well));
    moment.shutByFlow.push_back(NumberOf(well.at("shut_by_flow")));
    moment.isTold.push_back(well.at("is_told"));
  }
  return moment;
}

}  // namespace gantry::flowlink
