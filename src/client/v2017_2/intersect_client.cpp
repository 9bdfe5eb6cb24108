#include "client/v2017_2/intersect_client.h"

#include "client/argument_check.h"

namespace gantry::v2017_2 {

bool IntersectClient::create_fluid_source_external(const std::string& well,
                                                   const std::string& source,
                                                   const std::string& phase) {
  IncomingMessage reply = Ask(BeginSetter("CREATE_FLDSRCEXT")
                                  .AppendString("WELLNAME", well)
                                  .AppendString("STNAME", source)
                                  .AppendString("STPHASE", phase));
  const int32_t result = reply.ReadInts("STRET", 1).front();
  reply.ExpectMarker("END");
  FinishReply(reply);
  return result != 0;
}

void IntersectClient::set_composition_of_fluid_source_external(const std::string& source,
                                                               const Doubles& values,
                                                               const Strings& names,
                                                               const std::string& phase) {
  CheckSizes("set_composition_of_fluid_source_external", {2, values.size()}, {3, names.size()});
  SendAndAwaitReady(BeginSetter("SETWSTRE")
                        .AppendString("STNAME", source)
                        .AppendDoubles("STCMPVALUES", values)
                        .AppendStrings("STCMPNAMES", names)
                        .AppendString("STPHASE", phase));
}

}  // namespace gantry::v2017_2
