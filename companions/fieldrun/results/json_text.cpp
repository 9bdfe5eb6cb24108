#include "fieldrun/results/json_text.h"

#include <nlohmann/json.hpp>

namespace gantry::fieldrun {
namespace {

nlohmann::ordered_json ToObject(const PrintedRow& row) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  for (const auto& [name, value] : row) {
    std::visit([&, &key = name](const auto& held) { object[key] = held; }, value);
  }
  return object;
}

std::string Dump(const nlohmann::ordered_json& json) {
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string ToJson(const std::vector<PrintedRow>& rows) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const PrintedRow& row : rows) list.push_back(ToObject(row));
  return Dump(list);
}

std::string ToJson(const PrintedRow& row) { return Dump(ToObject(row)); }

}  // namespace gantry::fieldrun
