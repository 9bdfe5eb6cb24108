#include "client/v2017_2/ext_connector_local.h"

#include "client/v2017_2/injection_sources.h"

namespace gantry::v2017_2 {

bool CExtConnectorLocal::SetInjectionSource(const std::string& well, const std::string& source) {
  return AttachInjectionSource(client_.value(), well, source);
}

void CExtConnectorLocal::SetWellInjectionComposition(const Strings& sources,
                                                     const std::vector<Doubles>& fractions) {
  SetSourceCompositions(client_.value(), sources, fractions);
}

}  // namespace gantry::v2017_2
