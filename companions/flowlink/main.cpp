// flowlink: OPM Flow under an external controller. docs/flowlink.md

#include <cstdio>
#include <filesystem>

#include "flowlink/deck_composer.h"
#include "flowlink/flow_simulator.h"
#include "flowlink/link_fault.h"
#include "simulator_side/controller_service.h"
#include "simulator_side/controller_session.h"
#include "simulator_side/driver_arguments.h"
#include "simulator_side/state_file.h"

namespace {

using namespace gantry;
using namespace gantry::flowlink;

/// What can be said of the deck that BASE.afi names without running it, a line each. The status is
/// 1 when it can't be coupled.
int Check(const std::string& settings) {
  bool isRefused = false;
  try {
    for (const DeckFinding& finding : CheckDeck(ReadLinkSettings(settings))) {
      std::printf("%s\n", finding.Text().c_str());
      isRefused = isRefused || finding.isRefusal;
    }
  } catch (const LinkFault& fault) {
    std::printf("%s\n", fault.what());
    return 1;
  }
  return isRefused ? 1 : 0;
}

const simulator::ProgramDescription kProgram = {
    "flowlink",
    "OPM Flow on a deck of your own, driven by an external controller.",
    FLOWLINK_VERSION,
    {{"--settings-keys", "show what the settings in BASE.afi may hold", SettingsReference}},
    Check};

std::unique_ptr<FlowSimulator> MakeFlow(const std::string& base) {
  const std::string name = std::filesystem::path(base).filename().string();
  const auto days = simulator::DaysToResumeAt();
  const LinkSettings settings = ReadLinkSettings(base + ".afi");
  if (!days) return std::make_unique<FlowSimulator>(settings, name, WorkFolderOf(base));
  return std::make_unique<FlowSimulator>(settings, name, WorkFolderOf(base), *days);
}

/// The deck is read and flow started only when the controller is there to hear what is wrong; flow
/// may take longer to read its deck than the controller would knock.
void Serve(ByteChannel& channel, const std::string& base) {
  std::unique_ptr<FlowSimulator> flow;
  try {
    flow = MakeFlow(base);
  } catch (const std::exception& fault) {
    simulator::RefuseController(channel, fault.what());
    throw;
  }
  simulator::ControllerSession(*flow, channel).Run();
}

}  // namespace

int main(int argc, char** argv) {
  const auto arguments = simulator::ReadDriverArguments(argc, argv, kProgram);
  if (const int* status = std::get_if<int>(&arguments)) return *status;
  const auto& driver = std::get<simulator::DriverArguments>(arguments);
  return simulator::ServeController(kProgram.name, driver,
                                    [&](ByteChannel& channel) { Serve(channel, driver.base); });
}
