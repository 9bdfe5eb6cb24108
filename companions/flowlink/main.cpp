// flowlink: OPM Flow under an external controller. docs/flowlink.md

#include <filesystem>

#include "flowlink/flow_simulator.h"
#include "flowlink/link_fault.h"
#include "simulator/server/controller_service.h"
#include "simulator/server/controller_session.h"
#include "simulator/server/driver_arguments.h"

namespace {

using namespace gantry;
using namespace gantry::flowlink;

const simulator::ProgramDescription kProgram = {
    "flowlink",
    "OPM Flow on a deck of your own, driven by an external controller.",
    FLOWLINK_VERSION,
    {}};

/// The deck is read and flow started only when the controller is there to hear what is wrong; flow
/// may take longer to read its deck than the controller would knock.
void Serve(ByteChannel& channel, const std::string& base) {
  std::unique_ptr<FlowSimulator> flow;
  try {
    flow = std::make_unique<FlowSimulator>(ReadLinkSettings(base + ".afi"),
                                           std::filesystem::path(base).filename().string(),
                                           WorkFolderOf(base));
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
