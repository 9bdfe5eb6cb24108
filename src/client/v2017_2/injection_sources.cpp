#include "client/v2017_2/injection_sources.h"

#include <stdexcept>

#include "client/item_names.h"
#include "client/v2017_2/intersect_client.h"

namespace gantry::v2017_2 {

bool AttachInjectionSource(IntersectClient& client, const std::string& well,
                           const std::string& source) {
  return client.create_fluid_source_external(well, source, "GAS");
}

void SetSourceCompositions(IntersectClient& client, const Strings& sources,
                           const std::vector<Doubles>& fractions) {
  if (sources.size() != fractions.size()) {
    throw std::runtime_error("Inconsistent data sent to SetWellInjectionComposition");
  }
  for (size_t i = 0; i < sources.size(); ++i) {
    Strings names;
    AppendMoleFractionItems(static_cast<int32_t>(fractions[i].size()), names);
    client.set_composition_of_fluid_source_external(sources[i], fractions[i], names, "");
  }
}

}  // namespace gantry::v2017_2
