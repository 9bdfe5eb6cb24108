#pragma once

#include <optional>

#include "client/local_connector.h"
#include "client/v2016_2/intersect_client.h"

namespace gantry::v2016_2 {

/// The connector for simulators before 2017.2, which know no injection sources.
class CExtConnectorLocal : public CExtConnectorLocalBase {
 public:
  explicit CExtConnectorLocal(uint32_t port, platform::Bystanders bystanders = {})
      : CExtConnectorLocalBase(port, std::move(bystanders)) {}

  std::string GetConnectorVersionName() override { return "2016.2 - 2017.1"; }
  bool SetInjectionSource(const std::string&, const std::string&) override { return false; }
  void SetWellInjectionComposition(const Strings&, const std::vector<Doubles>&) override {}

 private:
  IntersectClientBase& CreateClient() override { return client_.emplace(NewConnection()); }
  void DestroyClient() override { client_.reset(); }

  std::optional<IntersectClient> client_;
};

}  // namespace gantry::v2016_2
