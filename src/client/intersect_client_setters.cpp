#include "client/argument_check.h"
#include "client/intersect_client.h"

namespace gantry {

namespace {

constexpr std::string_view kSetConstraints = "set_constraints_for_wells";
constexpr std::string_view kUser = "USER";

/// One well's items against another of its lists. The text gives the outer counts, which are equal
/// by then: settled, and kept.
void CheckItems(const Strings& items, ListArgument list, size_t wellCount) {
  if (items.size() == list.size) return;
  FailSizes(kSetConstraints, {2, wellCount}, {list.number, wellCount});
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
  CheckSizes(kSetConstraints, {1, wells.size()}, {2, items.size()});
  CheckSizes(kSetConstraints, {1, wells.size()}, {3, values.size()});
  CheckSizes(kSetConstraints, {1, wells.size()}, {4, setters.size()});
  for (size_t i = 0; i < wells.size(); ++i) {
    CheckItems(items[i], {3, values[i].size()}, wells.size());
    CheckItems(items[i], {4, setters[i].size()}, wells.size());
  }
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  for (size_t i = 0; i < wells.size(); ++i) {
    message.AppendString("WELLNAME", wells[i])
        .AppendStrings("ITEMS", items[i])
        .AppendDoubles("VALUES", values[i])
        .AppendStrings("SETTERS", setters[i]);
  }
  SendAndAwaitReady(message);
}

void IntersectClientBase::set_user_constraints_for_wells(const Strings& wells,
                                                         const std::vector<Strings>& items,
                                                         const std::vector<Doubles>& values) {
  CheckSizes(kSetConstraints, {1, wells.size()}, {2, items.size()});
  CheckSizes(kSetConstraints, {1, wells.size()}, {3, values.size()});
  for (size_t i = 0; i < wells.size(); ++i) {
    CheckItems(items[i], {3, values[i].size()}, wells.size());
  }
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  for (size_t i = 0; i < wells.size(); ++i) {
    message.AppendString("WELLNAME", wells[i])
        .AppendStrings("ITEMS", items[i])
        .AppendDoubles("VALUES", values[i])
        .AppendRepeated("SETTERS", items[i].size(), kUser);
  }
  SendAndAwaitReady(message);
}

void IntersectClientBase::encode_user_constraints(const Strings& wells,
                                                  std::span<const Strings* const> items,
                                                  EncodedConstraints& constraints) {
  CheckSizes(kSetConstraints, {1, wells.size()}, {2, items.size()});
  OutgoingMessage message = BeginSetter("SETWCONSTRAINTS");
  constraints.values.clear();
  Doubles values;
  for (size_t i = 0; i < wells.size(); ++i) {
    values.resize(items[i]->size());
    message.AppendString("WELLNAME", wells[i])
        .AppendStrings("ITEMS", *items[i])
        .AppendDoubles("VALUES", values);
    constraints.values.push_back(message.Size() - values.size() * sizeof(double));
    message.AppendRepeated("SETTERS", values.size(), kUser);
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
