#pragma once

#include "client/local_connector.h"
#include "client/v2016_2/intersect_client.h"

namespace gantry::v2016_2 {

/// The connector for simulators before 2017.2, which know no injection sources.
class CExtConnectorLocal : public CExtConnectorLocalBase {
 public:
  using CExtConnectorLocalBase::CExtConnectorLocalBase;

  std::string GetConnectorVersionName() override { return "2016.2 - 2017.1"; }
  bool SetInjectionSource(const std::string&, const std::string&) override { return false; }
  void SetWellInjectionComposition(const Strings&, const std::vector<Doubles>&) override {}

 private:
  std::unique_ptr<IntersectClientBase> NewClient(
      std::unique_ptr<PeerConnection> connection) override {
    return std::make_unique<IntersectClient>(std::move(connection));
  }
};

}  // namespace gantry::v2016_2
