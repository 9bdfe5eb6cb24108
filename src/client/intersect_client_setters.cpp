#include "client/argument_check.h"
#include "client/intersect_client.h"

namespace gantry {

namespace {

/// The outer lists against each other, then each well's items against its values and setters. The
/// text of the latter gives the outer counts, which are equal by then: settled, and kept.
void CheckConstraintSizes(const Strings& wells, const std::vector<Strings>& items,
                          const std::vector<Doubles>& values, const std::vector<Strings>& setters) {
  constexpr std::string_view kOperation = "set_constraints_for_wells";
  CheckSizes(kOperation, {1, wells.size()}, {2, items.size()});
  CheckSizes(kOperation, {1, wells.size()}, {3, values.size()});
  CheckSizes(kOperation, {1, wells.size()}, {4, setters.size()});
  for (size_t i = 0; i < wells.size(); ++i) {
    for (const ListArgument inner : {ListArgument{3, values[i].size()}, {4, setters[i].size()}}) {
      if (items[i].size() == inner.size) continue;
      FailSizes(kOperation, {2, wells.size()}, {inner.number, items.size()});
    }
  }
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
  CheckConstraintSizes(wells, items, values, setters);
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  for (size_t i = 0; i < wells.size(); ++i) {
    message.AppendString("WELLNAME", wells[i])
        .AppendStrings("ITEMS", items[i])
        .AppendDoubles("VALUES", values[i])
        .AppendStrings("SETTERS", setters[i]);
  }
  SendAndAwaitReady(message);
}

void IntersectClientBase::encode_constraints(const Strings& wells,
                                             std::span<const Strings* const> items,
                                             std::string_view setter,
                                             EncodedConstraints& constraints) {
  CheckSizes("set_constraints_for_wells", {1, wells.size()}, {2, items.size()});
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  constraints.values.clear();
  Doubles values;
  for (size_t i = 0; i < wells.size(); ++i) {
    values.resize(items[i]->size());
    message.AppendString("WELLNAME", wells[i])
        .AppendStrings("ITEMS", *items[i])
        .AppendDoubles("VALUES", values);
    constraints.values.push_back(message.Size() - values.size() * sizeof(double));
    message.AppendRepeated("SETTERS", values.size(), setter);
  }
  message.AppendMarker("END").KeepAs(constraints.message);
}

void IntersectClientBase::set_constraints_for_wells(const EncodedConstraints& constraints) {
  stream_.Send(constraints.message);
  receive_ready();
}

void IntersectClientBase::set_status_for_wells(const Strings& wells, const Strings& statuses,
                                               const std::string& closure) {
  CheckSizes("set_status_for_wells", {1, wells.size()}, {2, statuses.size()});
  SendAndAwaitReady(BeginSetter("SETWSTATUS")
                        .AppendString("WCLOSURE", closure)
                        .AppendString("SETITEM", "STATUS")
                        .AppendStrings("WELNAMES", wells)
                        .AppendStrings("VALUES", statuses));
}

void IntersectClientBase::set_uptime_fractions_for_wells(const Strings& wells,
                                                         const Doubles& fractions) {
  CheckSizes("set_uptime_fractions_for_wells", {1, wells.size()}, {2, fractions.size()});
  SendAndAwaitReady(BeginSetter("SETWELLS")
                        .AppendString("SETITEM", "UPTIME_FRACTION")
                        .AppendStrings("WELNAMES", wells)
                        .AppendDoubles("VALUES", fractions));
}

}  // namespace gantry
