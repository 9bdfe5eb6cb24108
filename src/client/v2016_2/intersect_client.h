#pragma once

#include "client/intersect_client.h"

namespace gantry::v2016_2 {

/// The client of simulators from 2016.2 up to 2017.1.
class IntersectClient : public IntersectClientBase {
 public:
  IntersectClient() = default;
  explicit IntersectClient(std::unique_ptr<PeerConnection> connection)
      : IntersectClientBase(std::move(connection)) {}

  /// The strings of the one entry in the answer, whatever its name.
  Strings get_fm_fluid_model() { return RequestFluidModel(std::nullopt); }
};

}  // namespace gantry::v2016_2
