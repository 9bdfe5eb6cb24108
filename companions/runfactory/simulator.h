#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/connector_base.h"
#include "client/v2017_2/injection_sources.h"
#include "client/v2017_2/intersect_client.h"

namespace gantry::cluster {

/// The simulator of one session, of the version that the driver's user chose. What the service asks
/// of it is the same in every version, but for the sources of injected gas.
class Simulator {
 public:
  /// A code of 20172 or more knows such sources.
  explicit Simulator(int32_t versionCode) : hasSources_(versionCode >= kVersion2017_2) {}

  IntersectClientBase& Client() { return client_; }
  /// False, with nothing sent, for a version that knows no such sources.
  bool SetInjectionSource(const std::string& well, const std::string& source) {
    return hasSources_ && v2017_2::AttachInjectionSource(client_, well, source);
  }
  void SetInjectionCompositions(const Strings& sources, const std::vector<Doubles>& fractions) {
    if (hasSources_) v2017_2::SetSourceCompositions(client_, sources, fractions);
  }

 private:
  v2017_2::IntersectClient client_;
  bool hasSources_;
};

}  // namespace gantry::cluster
