#include <algorithm>
#include <array>

#include "client/words.h"
#include "simulator_side/controller_session.h"

namespace gantry::simulator {

namespace {

Strings ReadItems(IncomingMessage& message) {
  Strings items = message.ReadStrings("QITEMS");
  FinishRequest(message);
  return items;
}

void AppendValues(OutgoingMessage& reply, const Doubles& values) {
  reply.AppendDoubles("VALUES", values);
}
void AppendValues(OutgoingMessage& reply, const Strings& values) {
  reply.AppendStrings("VALUES", values);
}

struct WellText {
  std::string_view item;
  std::string_view (ControlledSimulator::*of)(size_t well) const;
};
constexpr auto kWellTexts = std::to_array<WellText>({
    {words::kType, &ControlledSimulator::TypeOf},
    {words::kStatus, &ControlledSimulator::StatusOf},
});

std::optional<size_t> FindWellText(std::string_view item) {
  const auto found = std::ranges::find(kWellTexts, item, &WellText::item);
  if (found == kWellTexts.end()) return std::nullopt;
  return static_cast<size_t>(found - kWellTexts.begin());
}

struct ReservoirText {
  std::string_view item;
  std::string ModelDescription::*text;
};
constexpr ReservoirText kReservoirTexts[] = {
    {"IX_VERSION", &ModelDescription::version},
    {"UNIT_SYSTEM", &ModelDescription::unitSystem},
    {"FM_FLUID_MODEL", &ModelDescription::fieldFluidModel},
    {"RES_FLUID_MODEL", &ModelDescription::reservoirFluidModel},
};

}  // namespace

/// Items that nobody knows are left out of the answer.
template <class Value, class Find, class ValueOf>
void ControllerSession::AnswerWells(IncomingMessage& message, Find find, ValueOf valueOf) {
  const Strings asked = message.ReadStrings("QITEMS");
  const Strings wells = message.ReadStrings("WELNAMES");
  FinishRequest(message);
  Strings items;
  std::vector<size_t> handles;
  for (const std::string& item : asked) {
    const std::optional<size_t> handle = find(item);
    if (!handle) continue;
    items.push_back(item);
    handles.push_back(*handle);
  }
  std::vector<Value> values(handles.size());
  OutgoingMessage reply = StartReply();
  reply.AppendStrings("QITEMS", items);
  for (const size_t well : KnownWells(wells)) {
    for (size_t i = 0; i < values.size(); ++i) values[i] = valueOf(well, handles[i]);
    reply.AppendString("WELLNAME", simulator_.WellNames()[well]);
    AppendValues(reply, values);
  }
  FinishReply(reply);
}

void ControllerSession::QueryWells(IncomingMessage& message) {
  AnswerWells<double>(
      message, [this](std::string_view item) { return simulator_.FindWellNumber(item); },
      [this](size_t well, size_t item) { return simulator_.WellNumber(well, item); });
}

void ControllerSession::QueryWellTexts(IncomingMessage& message) {
  AnswerWells<std::string>(message, FindWellText, [this](size_t well, size_t item) {
    return (simulator_.*kWellTexts[item].of)(well);
  });
}

void ControllerSession::QueryReservoir(IncomingMessage& message) {
  const Strings items = ReadItems(message);
  OutgoingMessage reply = StartReply();
  for (const std::string& item : items) {
    if (item != "START_DATE") continue;
    reply.AppendString("QITEM", item).AppendInts("VALUES", simulator_.Description().startDate);
  }
  FinishReply(reply);
}

void ControllerSession::QueryReservoirTexts(IncomingMessage& message) {
  const Strings items = ReadItems(message);
  OutgoingMessage reply = StartReply();
  for (const std::string& item : items) {
    for (const ReservoirText& known : kReservoirTexts) {
      if (item != known.item) continue;
      reply.AppendString("QITEM", item)
          .AppendString("VALUES", simulator_.Description().*known.text);
    }
  }
  FinishReply(reply);
}

void ControllerSession::QueryConstraints(IncomingMessage& message) {
  const Strings wells = message.ReadStrings("WELNAMES");
  FinishRequest(message);
  OutgoingMessage reply = StartReply();
  for (const size_t well : KnownWells(wells)) {
    Strings items;
    Doubles values;
    Strings setters;
    for (const WellConstraint& constraint : simulator_.Constraints(well)) {
      items.push_back(constraint.item);
      values.push_back(constraint.value);
      setters.push_back(constraint.setter);
    }
    reply.AppendString("WELLNAME", simulator_.WellNames()[well])
        .AppendStrings("ITEMS", items)
        .AppendDoubles("VALUES", values)
        .AppendStrings("SETTERS", setters);
  }
  FinishReply(reply);
}

void ControllerSession::QueryInflow(IncomingMessage& message) {
  const Strings wells = message.ReadStrings("WELNAMES");
  const Strings pressureTypes = message.ReadStrings("PRESSURETYPES", wells.size());
  const int32_t pointCount = message.ReadInts("NPOINTS", 1).front();
  const double skewness = message.ReadDoubles("SKEWNESS", 1).front();
  FinishRequest(message);
  OutgoingMessage reply = StartReply();
  for (size_t i = 0; i < wells.size(); ++i) {
    const InflowTable table =
        simulator_.MeasureInflow(WellNamed(wells[i]), pressureTypes[i], pointCount, skewness);
    reply.AppendString("WELLNAME", wells[i]).AppendInt("NPOINTS", pointCount);
    for (size_t item = 0; item < table.items.size(); ++item) {
      reply.AppendString("ITEM", table.items[item]).AppendDoubles("VALUES", table.values[item]);
    }
  }
  FinishReply(reply);
}

void ControllerSession::QueryFluidModel(IncomingMessage& message) {
  FinishRequest(message);
  OutgoingMessage reply = StartReply();
  const Strings& components = simulator_.Description().componentNames;
  if (!components.empty()) reply.AppendStrings("NCOMPS", components);
  FinishReply(reply);
}

void ControllerSession::QueryReservoirFluids(IncomingMessage& message) {
  FinishRequest(message);
  OutgoingMessage reply = StartReply();
  for (const ReservoirFluidRecord& fluid : simulator_.Description().fluids) {
    reply.AppendString("FLUIDMODELDNAME", fluid.name)
        .AppendString("EOSNAME", fluid.eosName)
        .AppendStrings("NCOMPS", fluid.componentNames)
        .AppendDoubles("BIC", fluid.binaryInteraction);
    for (size_t i = 0; i < fluid.propertyNames.size(); ++i) {
      reply.AppendString("EOSPROPNAME", fluid.propertyNames[i])
          .AppendDoubles("VALUES", fluid.propertyValues[i]);
    }
  }
  FinishReply(reply);
}

}  // namespace gantry::simulator
