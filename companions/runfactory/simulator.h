#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "client/query_results.h"

namespace gantry {
class IntersectClientBase;
}

namespace gantry::cluster {

/// The simulator of one session, by the client of the version that the driver's user chose.
class Simulator {
 public:
  virtual ~Simulator() = default;

  virtual IntersectClientBase& Client() = 0;
  /// False, with nothing sent, for a version that knows no such sources.
  virtual bool SetInjectionSource(const std::string& well, const std::string& source) = 0;
  virtual void SetInjectionCompositions(const Strings& sources,
                                        const std::vector<Doubles>& fractions) = 0;
};

/// A code of 20172 or more takes the newer client.
std::unique_ptr<Simulator> MakeSimulator(int32_t versionCode);

}  // namespace gantry::cluster
