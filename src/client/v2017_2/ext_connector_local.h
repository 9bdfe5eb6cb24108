#pragma once

#include "client/local_connector.h"
#include "client/v2017_2/injection_sources.h"
#include "client/v2017_2/intersect_client.h"

namespace gantry::v2017_2 {

/// The connector for simulators from 2017.2 on, which take what a well injects.
class CExtConnectorLocal : public CExtConnectorLocalBase {
 public:
  using CExtConnectorLocalBase::CExtConnectorLocalBase;

  std::string GetConnectorVersionName() override { return "2017.2->"; }
  bool SetInjectionSource(const std::string& well, const std::string& source) override {
    return AttachInjectionSource(OwnClient(), well, source);
  }
  void SetWellInjectionComposition(const Strings& sources,
                                   const std::vector<Doubles>& fractions) override {
    SetSourceCompositions(OwnClient(), sources, fractions);
  }

 private:
  std::unique_ptr<IntersectClientBase> NewClient(
      std::unique_ptr<PeerConnection> connection) override {
    return std::make_unique<IntersectClient>(std::move(connection));
  }
  IntersectClient& OwnClient() { return static_cast<IntersectClient&>(Client()); }
};

}  // namespace gantry::v2017_2
