// tanksim: a small reference simulator that an external controller drives. docs/tanksim.md

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "platform/file_path.h"
#include "simulator_side/controller_service.h"
#include "simulator_side/controller_session.h"
#include "simulator_side/driver_arguments.h"
#include "simulator_side/state_file.h"
#include "tanksim/deck_reader.h"
#include "tanksim/tank_simulator.h"
#include "text/failure_text.h"

namespace {

using namespace gantry;
using namespace gantry::simulator;

int CheckDeck(const std::string& deck) {
  const std::filesystem::path file = platform::PathOf(deck);
  try {
    const TankSimulator simulator(ReadDeck(file));
    return 0;
  } catch (const DeckError& error) {
    std::printf("%s\n", error.what());
    return kRunFailed;
  }
}

const ProgramDescription kProgram = {
    "tanksim",
    "A reference reservoir simulator of tanks, driven by an external controller.",
    TANKSIM_VERSION,
    {{"--deck-keys", "show the numbers of a deck with units and ranges", DeckReference}},
    CheckDeck};

/// All faults, and below several of them the first again with their number: whoever waits for the
/// simulator may tell its last line alone.
void TellFaults(const std::string& faults) {
  std::fprintf(stderr, "%s\n", faults.c_str());
  const auto others = std::ranges::count(faults, '\n');
  if (others == 0) return;
  const std::string first = faults.substr(0, faults.find('\n'));
  std::fprintf(stderr, "%s (and %d more)\n", first.c_str(), static_cast<int>(others));
}

/// Readies the simulator for a host that keeps results, and may want a run to be resumed. One that
/// can't be is told to the controller, which waits for the first word.
void GoOn(TankSimulator& simulator, ByteChannel& channel, const std::string& base) {
  const auto results = ResultsOfHost();
  if (results) simulator.KeepStates(*results / (platform::PathOf(base).filename() += ".state"));
  const auto days = DaysToResumeAt();
  if (!days) return;
  try {
    simulator.GoOnAt(*days);
  } catch (const ResumeRefused& refusal) {
    RefuseController(channel, refusal.what());
    throw;
  }
}

int Run(const DriverArguments& arguments) {
  try {
    TankSimulator simulator(ReadDeck(platform::PathOf(arguments.base + ".afi")));
    return ServeController(kProgram.name, arguments, [&](ByteChannel& channel) {
      GoOn(simulator, channel, arguments.base);
      ControllerSession(simulator, channel).Run();
    });
  } catch (const DeckError& error) {
    TellFaults(error.what());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", kProgram.name.c_str(),
                 FailureText(error, arguments.base).c_str());
  }
  return kRunFailed;
}

}  // namespace

int main(int argc, char** argv) {
  const auto arguments = ReadDriverArguments(argc, argv, kProgram);
  if (const int* status = std::get_if<int>(&arguments)) return *status;
  return Run(std::get<DriverArguments>(arguments));
}
