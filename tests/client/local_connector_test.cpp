#include <gtest/gtest.h>

#include "support/connector_talk.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

class LocalRig : public ConnectorRig {
 public:
  LocalRig(int32_t versionCode, SimulatedField& field) : versionCode_(versionCode) {
    peer_.Serve([&field](const Entries& request) { return AnswerOnWire(field, request); });
    peer_.Start();
  }
  std::unique_ptr<CExtConnectorBase> Connect() override {
    return CreateLocalConnector(versionCode_, peer_.Port());
  }

 private:
  const int32_t versionCode_;
  ScriptedPeer peer_;
};

void PlayLocally(const std::string& file) {
  for (const auto& [code, version] : {std::pair{20171, "2016.2"}, {kVersion2017_2, "2017.2"}}) {
    PlayWithField(file, version,
                  [&](SimulatedField& field) { return std::make_unique<LocalRig>(code, field); });
  }
}

TEST(LocalConnector, DoesWhatEveryConnectorMust) { PlayLocally("client/talks/contract.talk"); }

TEST(LocalConnector, GoesAsItIsWritten) { PlayLocally("client/talks/local_connector.talk"); }

}  // namespace
}  // namespace gantry::test
