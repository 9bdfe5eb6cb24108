#include <gtest/gtest.h>

#include "support/connector_talk.h"

namespace gantry::test {
namespace {

class LocalRig : public ConnectorRig {
 public:
  LocalRig(int32_t versionCode, ScriptedPeer::Answering answer) : versionCode_(versionCode) {
    peer_.Serve(std::move(answer));
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
    PlayWithField(file, version, [&](ScriptedPeer::Answering answer) {
      return std::make_unique<LocalRig>(code, std::move(answer));
    });
  }
}

TEST(LocalConnector, DoesWhatEveryConnectorMust) { PlayLocally("client/talks/contract.talk"); }

TEST(LocalConnector, GoesAsItIsWritten) { PlayLocally("client/talks/local_connector.talk"); }

}  // namespace
}  // namespace gantry::test
