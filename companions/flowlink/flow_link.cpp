#include "flowlink/flow_link.h"

#include <nlohmann/json.hpp>

#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

using nlohmann::json;

std::vector<std::vector<double>> ValuesOf(const json& message,
                                          const std::vector<std::string>& wells, size_t count) {
  std::vector<std::vector<double>> values;
  for (const std::string& well : wells) {
    values.push_back(message.at("values").at(well).get<std::vector<double>>());
    if (values.back().size() != count) throw LinkFault("flow's script left out values of " + well);
  }
  return values;
}

DeckWell WellOf(const json& wells, const std::string& name) {
  DeckWell well;
  const auto found = wells.find(name);
  if (found == wells.end()) return well;
  well.isDrilled = true;
  well.isProducer = found->at("producer").get<bool>();
  well.status = found->at("status").get<std::string>();
  well.limits = found->at("limits").get<std::map<std::string, double>>();
  return well;
}

}  // namespace

class FlowLink::Message : public json {
 public:
  explicit Message(json content) : json(std::move(content)) {}
  bool Is(const char* event) const { return at("event") == event; }
};

FlowLink::FlowLink(FlowProcess& process, const std::vector<std::string>& vectors,
                   const std::string& units, int secondsForQuestion)
    : process_(process), vectorCount_(vectors.size()) {
  const json start = {
      {"vectors", vectors}, {"units", units}, {"secondsForQuestion", secondsForQuestion}};
  if (!process_.WriteLine(start.dump())) throw LinkFault(process_.DescribeEnd());
  const Message model = Receive();
  try {
    wells_ = model.at("wells").get<std::vector<std::string>>();
    start_ = model.at("start").get<std::array<int32_t, 6>>();
  } catch (const json::exception& error) {
    throw LinkFault(std::string("flow's script gave no model: ") + error.what());
  }
  AwaitStop();
}

std::vector<std::vector<double>> FlowLink::Ask(const std::string& keywords) {
  Send("ask", keywords);
  const Message answer = Receive();
  if (!answer.Is("answer")) {
    throw LinkFault("flow found no solution for the wells under these limits");
  }
  try {
    return ValuesOf(answer, wells_, vectorCount_);
  } catch (const json::exception& error) {
    throw LinkFault(std::string("flow's script gave no answer: ") + error.what());
  }
}

void FlowLink::Advance(const std::string& keywords) {
  Send("advance", keywords);
  AwaitStop();
}

void FlowLink::Finish() {
  Send("finish", "");
  process_.WaitForEnd();
}

void FlowLink::Send(const std::string& order, const std::string& keywords) {
  const json message = {{"do", order}, {"keywords", keywords}};
  if (!process_.WriteLine(message.dump())) throw LinkFault(process_.DescribeEnd());
}

FlowLink::Message FlowLink::Receive() {
  std::string line;
  if (!process_.ReadLine(line)) throw LinkFault(process_.DescribeEnd());
  Message message(json::parse(line, nullptr, false));
  if (!message.is_object() || !message.contains("event")) {
    throw LinkFault("flow's script sent something else than a message");
  }
  if (message.Is("failed")) {
    throw LinkFault("flow's script failed: " + message.value("reason", std::string()));
  }
  return message;
}

void FlowLink::AwaitStop() {
  const Message message = Receive();
  try {
    stop_.days = message.at("days").get<double>();
    stop_.isLast = message.at("last").get<bool>();
    stop_.values = ValuesOf(message, wells_, vectorCount_);
    stop_.wells.clear();
    for (const std::string& name : wells_) stop_.wells.push_back(WellOf(message.at("wells"), name));
  } catch (const json::exception& error) {
    throw LinkFault(std::string("flow's script gave no stop: ") + error.what());
  }
}

}  // namespace gantry::flowlink
