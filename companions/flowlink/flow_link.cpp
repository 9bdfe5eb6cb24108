#include "flowlink/flow_link.h"

#include <nlohmann/json.hpp>

#include "client/name_index.h"
#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

using nlohmann::json;
using Names = std::vector<std::string>;

WellValues ValuesOf(const json& found, const Names& wells, size_t count) {
  WellValues values;
  for (const std::string& well : wells) {
    values.push_back(found.at(well).get<std::vector<double>>());
    if (values.back().size() != count) throw LinkFault("flow's script left out values of " + well);
  }
  return values;
}

DeckChange::Well WellOf(const json& found) {
  return {found.at("producer").get<bool>(), found.at("status").get<std::string>(),
          found.at("limits").get<std::map<std::string, double>>()};
}

std::vector<DeckChange> ChangesOf(const json& found, const Names& wells) {
  const NameIndex places(wells);
  std::vector<DeckChange> changes;
  for (const json& entry : found) {
    DeckChange& change = changes.emplace_back();
    change.days = entry.at("days").get<double>();
    for (const auto& [name, well] : entry.at("wells").items()) {
      const auto place = places.Find(name);
      if (!place) throw LinkFault("flow's script tells of an unknown well " + name);
      change.wells.emplace_back(*place, WellOf(well));
    }
  }
  return changes;
}

json SetOf(const NamedLimits& limits) {
  json set = json::array();
  for (const NamedLimit& limit : limits)
    set.push_back(json::array({limit.well, limit.name, limit.value}));
  return set;
}

/// Takes out of a message what has to be there.
template <class Take>
void TakeFrom(const char* what, Take take) {
  try {
    take();
  } catch (const json::exception& error) {
    throw LinkFault(std::string("flow's script gave no ") + what + ": " + error.what());
  }
}

}  // namespace

FlowLink::FlowLink(FlowProcess& process, const std::vector<std::string>& vectors,
                   const std::string& units, int secondsForQuestion)
    : process_(process), vectorCount_(vectors.size()) {
  Send({{"vectors", vectors}, {"units", units}, {"secondsForQuestion", secondsForQuestion}});
  const json model = Receive();
  TakeFrom("model", [&] {
    wells_ = model.at("wells").get<Names>();
    start_ = model.at("start").get<std::array<int32_t, 6>>();
    changes_ = ChangesOf(model.at("deck"), wells_);
  });
  AwaitStop();
}

std::vector<FlowAnswer> FlowLink::Ask(const std::string& keywords, double days,
                                      std::span<const NamedLimits> sets) {
  json order = {{"do", "ask"}, {"keywords", keywords}, {"days", days}, {"sets", json::array()}};
  for (const NamedLimits& limits : sets) order["sets"].push_back(SetOf(limits));
  Send(order);
  const json message = Receive();
  std::vector<FlowAnswer> answers;
  TakeFrom("answer", [&] {
    for (const json& found : message.at("answers")) {
      FlowAnswer& answer = answers.emplace_back();
      answer.said = found.at("said").get<std::string>();
      const json& values = found.at("values");
      if (!values.is_null()) answer.values = ValuesOf(values, wells_, vectorCount_);
    }
  });
  if (answers.size() != sets.size()) throw LinkFault("flow's script answered another question");
  return answers;
}

void FlowLink::Advance(const std::string& keywords, const NamedLimits& numbers) {
  Send({{"do", "advance"}, {"keywords", keywords}, {"numbers", SetOf(numbers)}});
  AwaitStop();
}

void FlowLink::Finish() {
  Send(json::object({{"do", "finish"}}));
  process_.WaitForEnd();
}

void FlowLink::Send(const json& order) {
  if (!process_.WriteLine(order.dump())) throw LinkFault(process_.DescribeEnd());
}

json FlowLink::Receive() {
  std::string line;
  if (!process_.ReadLine(line)) throw LinkFault(process_.DescribeEnd());
  json message = json::parse(line, nullptr, false);
  if (!message.is_object() || !message.contains("event")) {
    throw LinkFault("flow's script sent something else than a message");
  }
  if (message["event"] == "failed") {
    throw LinkFault("flow's script failed: " + message.value("reason", std::string()));
  }
  return message;
}

void FlowLink::AwaitStop() {
  const json message = Receive();
  TakeFrom("stop", [&] {
    stop_.days = message.at("days").get<double>();
    stop_.report = message.at("report").get<int>();
    stop_.isLast = message.at("last").get<bool>();
    stop_.values = ValuesOf(message.at("values"), wells_, vectorCount_);
  });
}

}  // namespace gantry::flowlink
