#include "runfactory/simulator.h"

#include "client/connector_base.h"
#include "client/v2016_2/intersect_client.h"
#include "client/v2017_2/injection_sources.h"
#include "client/v2017_2/intersect_client.h"

namespace gantry::cluster {

namespace {

class OlderSimulator : public Simulator {
 public:
  IntersectClientBase& Client() override { return client_; }
  bool SetInjectionSource(const std::string&, const std::string&) override { return false; }
  void SetInjectionCompositions(const Strings&, const std::vector<Doubles>&) override {}

 private:
  v2016_2::IntersectClient client_;
};

class NewerSimulator : public Simulator {
 public:
  IntersectClientBase& Client() override { return client_; }
  bool SetInjectionSource(const std::string& well, const std::string& source) override {
    return v2017_2::AttachInjectionSource(client_, well, source);
  }
  void SetInjectionCompositions(const Strings& sources,
                                const std::vector<Doubles>& fractions) override {
    v2017_2::SetSourceCompositions(client_, sources, fractions);
  }

 private:
  v2017_2::IntersectClient client_;
};

}  // namespace

std::unique_ptr<Simulator> MakeSimulator(int32_t versionCode) {
  if (versionCode >= kVersion2017_2) return std::make_unique<NewerSimulator>();
  return std::make_unique<OlderSimulator>();
}

}  // namespace gantry::cluster
