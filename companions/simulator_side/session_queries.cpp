#include "simulator_side/controller_session.h"

namespace gantry::simulator {

namespace {

/// Items that the simulator knows, with their handles; the others are left out of the answer.
struct KnownItems {
  Strings names;
  std::vector<size_t> handles;
};

template <class Find>
KnownItems SelectItems(const Strings& asked, Find find) {
  KnownItems known;
  for (const std::string& item : asked) {
    const std::optional<size_t> handle = find(item);
    if (!handle) continue;
    known.names.push_back(item);
    known.handles.push_back(*handle);
  }
  return known;
}

struct WellRequest {
  Strings items;
  Strings wells;
};

WellRequest ReadWellRequest(IncomingMessage& message) {
  WellRequest request;
  request.items = message.ReadStrings("QITEMS");
  request.wells = message.ReadStrings("WELNAMES");
  message.ExpectMarker("END");
  message.EndOfMessage();
  return request;
}

Strings ReadItems(IncomingMessage& message) {
  Strings items = message.ReadStrings("QITEMS");
  message.ExpectMarker("END");
  message.EndOfMessage();
  return items;
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

void ControllerSession::QueryWells(IncomingMessage& message) {
  const WellRequest request = ReadWellRequest(message);
  const KnownItems items = SelectItems(
      request.items, [this](std::string_view item) { return simulator_.FindWellNumber(item); });
  Doubles values(items.handles.size());
  OutgoingMessage reply = StartReply();
  reply.AppendStrings("QITEMS", items.names);
  for (const size_t well : KnownWells(request.wells)) {
    for (size_t i = 0; i < values.size(); ++i) {
      values[i] = simulator_.WellNumber(well, items.handles[i]);
    }
    reply.AppendString("WELLNAME", simulator_.WellNames()[well]).AppendDoubles("VALUES", values);
  }
  FinishReply(reply);
}

void ControllerSession::QueryWellTexts(IncomingMessage& message) {
  const WellRequest request = ReadWellRequest(message);
  const KnownItems items = SelectItems(
      request.items, [this](std::string_view item) { return simulator_.FindWellText(item); });
  Strings values(items.handles.size());
  OutgoingMessage reply = StartReply();
  reply.AppendStrings("QITEMS", items.names);
  for (const size_t well : KnownWells(request.wells)) {
    for (size_t i = 0; i < values.size(); ++i) {
      values[i] = simulator_.WellText(well, items.handles[i]);
    }
    reply.AppendString("WELLNAME", simulator_.WellNames()[well]).AppendStrings("VALUES", values);
  }
  FinishReply(reply);
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
  message.ExpectMarker("END");
  message.EndOfMessage();
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
  message.ExpectMarker("END");
  message.EndOfMessage();
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
  message.ExpectMarker("END");
  message.EndOfMessage();
  OutgoingMessage reply = StartReply();
  const Strings& components = simulator_.Description().componentNames;
  if (!components.empty()) reply.AppendStrings("NCOMPS", components);
  FinishReply(reply);
}

void ControllerSession::QueryReservoirFluids(IncomingMessage& message) {
  message.ExpectMarker("END");
  message.EndOfMessage();
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
