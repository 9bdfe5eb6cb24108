#include "client/argument_check.h"
#include "client/intersect_client.h"
#include "client/words.h"

namespace gantry {

namespace {

constexpr std::string_view kSetConstraints = "set_constraints_for_wells";

/// The items of each well against another list of lists. Where those of a well differ, the text
/// gives the outer counts, which are equal by then: settled, and kept.
template <class Lists>
void CheckLists(const Strings& wells, const std::vector<Strings>& items, int number,
                const Lists& lists) {
  CheckSizes(kSetConstraints, {1, wells.size()}, {2, items.size()});
  CheckSizes(kSetConstraints, {1, wells.size()}, {number, lists.size()});
  for (size_t i = 0; i < wells.size(); ++i) {
    if (items[i].size() == lists[i].size()) continue;
    FailSizes(kSetConstraints, {2, wells.size()}, {number, wells.size()});
  }
}

/// The constraints of one well, up to who sets them.
OutgoingMessage& AppendConstraints(OutgoingMessage& message, const std::string& well,
                                   const Strings& items, const Doubles& values) {
  return message.AppendString("WELLNAME", well)
      .AppendStrings("ITEMS", items)
      .AppendDoubles("VALUES", values);
}

}  // namespace

OutgoingMessage IntersectClientBase::BeginSetter(std::string_view name) {
  return stream_.CreateOutgoingMessage().AppendMarker("SET").AppendMarker(name);
}

void IntersectClientBase::SendAndAwaitReady(OutgoingMessage message) {
  message.AppendMarker("END").Send();
  receive_ready();
}

void IntersectClientBase::set_constraints_for_wells(const Strings& wells,
                                                    const std::vector<Strings>& items,
                                                    const std::vector<Doubles>& values,
                                                    const std::vector<Strings>& setters) {
  CheckLists(wells, items, 3, values);
  CheckLists(wells, items, 4, setters);
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  for (size_t i = 0; i < wells.size(); ++i) {
    AppendConstraints(message, wells[i], items[i], values[i]).AppendStrings("SETTERS", setters[i]);
  }
  SendAndAwaitReady(message);
}

void IntersectClientBase::set_user_constraints_for_wells(const Strings& wells,
                                                         const std::vector<Strings>& items,
                                                         const std::vector<Doubles>& values) {
  CheckLists(wells, items, 3, values);
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  for (size_t i = 0; i < wells.size(); ++i) {
    AppendConstraints(message, wells[i], items[i], values[i])
        .AppendRepeated("SETTERS", items[i].size(), words::kUser);
  }
  SendAndAwaitReady(message);
}

void IntersectClientBase::encode_user_constraints(const Strings& wells,
                                                  std::span<const Strings* const> items,
                                                  EncodedConstraints& constraints) {
  CheckSizes(kSetConstraints, {1, wells.size()}, {2, items.size()});
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  constraints.values_.clear();
  Doubles values;
  for (size_t i = 0; i < wells.size(); ++i) {
    values.resize(items[i]->size());
    AppendConstraints(message, wells[i], *items[i], values);
    constraints.values_.push_back(message.Size() - values.size() * sizeof(double));
    message.AppendRepeated("SETTERS", values.size(), words::kUser);
  }
  message.AppendMarker("END").KeepAs(constraints.message_);
}

void IntersectClientBase::set_constraints_for_wells(const EncodedConstraints& constraints) {
  stream_.Send(constraints.message_);
  receive_ready();
}

OutgoingMessage IntersectClientBase::BeginStatus(const Strings& wells, const Strings& statuses,
                                                 const std::string& closure) {
  CheckSizes("set_status_for_wells", {1, wells.size()}, {2, statuses.size()});
  return BeginSetter("SETWSTATUS")
      .AppendString("WCLOSURE", closure)
      .AppendString("SETITEM", words::kStatus)
      .AppendStrings("WELNAMES", wells)
      .AppendStrings("VALUES", statuses);
}

void IntersectClientBase::set_status_for_wells(const Strings& wells, const Strings& statuses,
                                               const std::string& closure) {
  SendAndAwaitReady(BeginStatus(wells, statuses, closure));
}

void IntersectClientBase::encode_status_for_wells(const Strings& wells, const Strings& statuses,
                                                  const std::string& closure,
                                                  EncodedMessage& message) {
  BeginStatus(wells, statuses, closure).AppendMarker("END").KeepAs(message);
}

void IntersectClientBase::set_status_for_wells(const EncodedMessage& message) {
  stream_.Send(message);
  receive_ready();
}

void IntersectClientBase::set_uptime_fractions_for_wells(const Strings& wells,
                                                         const Doubles& fractions) {
  CheckSizes("set_uptime_fractions_for_wells", {1, wells.size()}, {2, fractions.size()});
  SendAndAwaitReady(BeginSetter("SETWELLS")
                        .AppendString("SETITEM", words::kUptimeFraction)
                        .AppendStrings("WELNAMES", wells)
                        .AppendDoubles("VALUES", fractions));
}

}  // namespace gantry
