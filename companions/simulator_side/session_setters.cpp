#include "simulator_side/controller_session.h"

namespace gantry::simulator {

namespace {

void ExpectItem(IncomingMessage& message, const std::string& expected) {
  const std::string item = message.ReadStrings("SETITEM", 1).front();
  if (item != expected) throw RequestRefused("Unknown well item to set: " + item);
}

/// The limits of all wells of one message: those of a well end at its entry of `ends`.
struct ConstraintLists {
  Strings wells;
  std::vector<WellConstraint> constraints;
  std::vector<size_t> ends;
};

ConstraintLists ReadConstraints(IncomingMessage& message) {
  ConstraintLists lists;
  for (;;) {
    const Header header = message.ReadHeader();
    if (header.name == "END") {
      IncomingMessage::CheckMarker(header);
      message.EndOfMessage();
      return lists;
    }
    IncomingMessage::CheckNameAndCount(header, "WELLNAME", 1);
    message.AppendStrings(header, lists.wells);
    Strings items = message.ReadStrings("ITEMS");
    const Doubles values = message.ReadDoubles("VALUES", items.size());
    Strings setters = message.ReadStrings("SETTERS", items.size());
    for (size_t i = 0; i < items.size(); ++i) {
      lists.constraints.push_back({std::move(items[i]), values[i], std::move(setters[i])});
    }
    lists.ends.push_back(lists.constraints.size());
  }
}

}  // namespace

void ControllerSession::SetConstraints(IncomingMessage& message) {
  const ConstraintLists lists = ReadConstraints(message);
  size_t begin = 0;
  for (size_t i = 0; i < lists.wells.size(); ++i) {
    simulator_.SetConstraints(WellNamed(lists.wells[i]),
                              std::span(lists.constraints).subspan(begin, lists.ends[i] - begin));
    begin = lists.ends[i];
  }
  SendReady();
}

void ControllerSession::SetStatus(IncomingMessage& message) {
  const std::string closure = message.ReadStrings("WCLOSURE", 1).front();
  ExpectItem(message, "STATUS");
  const Strings wells = message.ReadStrings("WELNAMES");
  const Strings statuses = message.ReadStrings("VALUES", wells.size());
  FinishRequest(message);
  for (size_t i = 0; i < wells.size(); ++i) {
    simulator_.SetStatus(WellNamed(wells[i]), statuses[i], closure);
  }
  SendReady();
}

void ControllerSession::SetWells(IncomingMessage& message) {
  ExpectItem(message, "UPTIME_FRACTION");
  const Strings wells = message.ReadStrings("WELNAMES");
  const Doubles fractions = message.ReadDoubles("VALUES", wells.size());
  FinishRequest(message);
  for (size_t i = 0; i < wells.size(); ++i) {
    simulator_.SetUptime(WellNamed(wells[i]), fractions[i]);
  }
  SendReady();
}

void ControllerSession::CreateFluidSource(IncomingMessage& message) {
  const std::string well = message.ReadStrings("WELLNAME", 1).front();
  const std::string source = message.ReadStrings("STNAME", 1).front();
  const std::string phase = message.ReadStrings("STPHASE", 1).front();
  FinishRequest(message);
  const bool created = simulator_.CreateFluidSource(WellNamed(well), source, phase);
  OutgoingMessage reply = StartReply();
  reply.AppendInt("STRET", created ? 1 : 0);
  FinishReply(reply);
}

void ControllerSession::SetFluidSource(IncomingMessage& message) {
  const std::string source = message.ReadStrings("STNAME", 1).front();
  const Doubles values = message.ReadDoubles("STCMPVALUES");
  const Strings items = message.ReadStrings("STCMPNAMES", values.size());
  const std::string phase = message.ReadStrings("STPHASE", 1).front();
  FinishRequest(message);
  simulator_.SetFluidSource(source, items, values, phase);
  SendReady();
}

}  // namespace gantry::simulator
