#pragma once

#include <optional>

#include "client/local_connector.h"
#include "client/v2017_2/intersect_client.h"

namespace gantry::v2017_2 {

/// The connector for simulators from 2017.2 on, which take what a well injects.
class CExtConnectorLocal : public CExtConnectorLocalBase {
 public:
  explicit CExtConnectorLocal(uint32_t port, platform::Bystanders bystanders = {})
      : CExtConnectorLocalBase(port, std::move(bystanders)) {}

  std::string GetConnectorVersionName() override { return "2017.2->"; }
  bool SetInjectionSource(const std::string& well, const std::string& source) override;
  void SetWellInjectionComposition(const Strings& sources,
                                   const std::vector<Doubles>& fractions) override;

 private:
  IntersectClientBase& CreateClient() override { return client_.emplace(NewConnection()); }
  void DestroyClient() override { client_.reset(); }

  std::optional<IntersectClient> client_;
};

}  // namespace gantry::v2017_2
