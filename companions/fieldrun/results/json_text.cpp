#include "fieldrun/results/json_text.h"

#include <nlohmann/json.hpp>

namespace gantry::fieldrun {

std::string JsonText(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json ToJson(const RunWarning& warning) {
  return {{"topic", warning.topic},
          {"well", warning.well},
          {"date", ToText(warning.date)},
          {"text", warning.text}};
}

Json ToJson(const EventReport& event) {
  return {{"date", ToText(event.date)}, {"cause", event.cause}, {"target", event.target},
          {"name", event.name},         {"what", event.what},   {"reason", event.reason}};
}

}  // namespace gantry::fieldrun
