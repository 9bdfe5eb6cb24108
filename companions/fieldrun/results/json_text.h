#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

using Json = nlohmann::ordered_json;  ///< keys in the order in which they were put in

/// JSON as text, with a line end: on one line, or indented. Texts that aren't UTF-8 have their bad
/// bytes replaced.
std::string JsonText(const Json& json, int indent = -1);

Json ToJson(const RunWarning& warning);
Json ToJson(const EventReport& event);

}  // namespace gantry::fieldrun
