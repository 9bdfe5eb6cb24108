// A message of any content to the simulator, behind a good handshake: it is answered or refused,
// and what ends the session is an exception with a text.

#include <cstdint>
#include <string>

#include "client/message_stream.h"
#include "simulator_side/controller_session.h"
#include "support/memory_connection.h"
#include "tanksim/deck_reader.h"
#include "tanksim/tank_simulator.h"

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

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Deck deck = ReadDeck(GANTRY_SAMPLE_DECK);
  TankSimulator simulator(deck);
  MemoryConnection connection(SetUp() + Word(size) + Word(size) +
                              std::string(reinterpret_cast<const char*>(data), size));
  try {
    ControllerSession(simulator, connection).Run();
  } catch (const std::exception&) {
    return 0;
  }
  return 0;
}
