#include <utility>

#include "client/v2016_2/ext_connector_local.h"
#include "client/v2017_2/ext_connector_local.h"

namespace gantry {

std::unique_ptr<CExtConnectorBase> CreateLocalConnector(int32_t versionCode, uint32_t port,
                                                        platform::Bystanders bystanders) {
  if (versionCode >= kVersion2017_2) {
    return Establish(std::make_unique<v2017_2::CExtConnectorLocal>(port, std::move(bystanders)));
  }
  return Establish(std::make_unique<v2016_2::CExtConnectorLocal>(port, std::move(bystanders)));
}

}  // namespace gantry
