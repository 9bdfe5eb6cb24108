// A message of any content to the simulator, behind a good handshake: it is answered or refused,
// and what ends the session is an exception with a text.
// Reads: companions/simulator_side/controller_session.cpp
// Reads: companions/simulator_side/session_queries.cpp
// Reads: companions/simulator_side/session_setters.cpp

#include <cstdint>
#include <string>

#include "client/message_stream.h"
#include "simulator_side/controller_session.h"
#include "support/memory_connection.h"
#include "tanksim/deck_reader.h"
#include "tanksim/tank_simulator.h"
#include "target.h"

using namespace gantry::simulator;
using gantry::test::MemoryConnection;

namespace {

std::string SetUp() {
  MemoryConnection connection;
  gantry::MessageStream(connection)
      .CreateOutgoingMessage()
      .AppendMarker("SETUP")
      .AppendString("VERSION", "V2")
      .AppendMarker("END")
      .Send();
  return connection.outgoing;
}

std::string Word(uint64_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

}  // namespace

FUZZ_TARGET(simulator_session) {
  static const Deck deck = ReadDeck(GANTRY_SAMPLE_DECK);
  TankSimulator simulator(deck);
  const std::string size = Word(input.size());
  MemoryConnection connection(SetUp() + size + size + std::string(input));
  try {
    ControllerSession(simulator, connection).Run();
  } catch (const std::exception&) {
    // What ends a session has a text.
  }
}
