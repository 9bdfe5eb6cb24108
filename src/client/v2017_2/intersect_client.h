#pragma once

#include "client/intersect_client.h"

namespace gantry::v2017_2 {

/// The client of simulators from 2017.2 on, which know fluid sources that a client makes.
class IntersectClient : public IntersectClientBase {
 public:
  IntersectClient() = default;
  explicit IntersectClient(std::unique_ptr<PeerConnection> connection)
      : IntersectClientBase(std::move(connection)) {}

  /// The strings of the entry "NCOMPS", the only one that is taken.
  Strings get_fm_fluid_model() { return RequestFluidModel("NCOMPS"); }

  /// Attaches a new source to a well; false when the simulator reports a zero result.
  bool create_fluid_source_external(const std::string& well, const std::string& source,
                                    const std::string& phase);
  void set_composition_of_fluid_source_external(const std::string& source, const Doubles& values,
                                                const Strings& names, const std::string& phase);
};

}  // namespace gantry::v2017_2
