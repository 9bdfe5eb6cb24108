// A message of any content to the simulator, behind a good handshake: it is answered or refused,
// and what ends the session is an exception with a text.
// Reads: companions/simulator_side/controller_session.cpp
// Reads: companions/simulator_side/session_queries.cpp
// Reads: companions/simulator_side/session_setters.cpp

#include "simulator_side/controller_session.h"
#include "support/memory_connection.h"
#include "support/wire_entries.h"
#include "tanksim/deck_reader.h"
#include "tanksim/tank_simulator.h"
#include "target.h"

using namespace gantry::simulator;
using namespace gantry::test;

FUZZ_TARGET(simulator_session) {
  static const Deck deck = ReadDeck(GANTRY_SAMPLE_DECK);
  TankSimulator simulator(deck);
  MemoryConnection connection(Frame({"SETUP", {"VERSION", Texts{"V2"}}, "END"}) +
                              FrameOf(std::string(input)));
  gantry::fuzz::MayRefuse<std::exception>([&] { ControllerSession(simulator, connection).Run(); });
}
