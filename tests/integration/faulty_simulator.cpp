// A simulator gone wrong, started by the module like any other. The case's base name says how:
//
//   closes      takes its controller and closes at once
//   garbage     answers with bytes that are no frame
//   refuses     refuses the set-up, with a reason
//   patient     waits until it can have its port, then refuses the set-up
//   vanishes    comes up in full, and is gone when it is to advance

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>

#include "client/message_stream.h"
#include "client/tcp_connection.h"

namespace {

using namespace gantry;

void TakeMessage(MessageStream& stream) {
  IncomingMessage message = stream.ReceiveMessage();
  for (Header header = message.ReadHeader(); header.name != "END"; header = message.ReadHeader()) {
    if (header.type == HeaderType::CSTR) message.ReadStrings(header);
    if (header.type == HeaderType::DOUB) message.ReadDoubles(header);
  }
  message.EndOfMessage();
}

void AcceptSetup(MessageStream& stream, const std::vector<std::string>& errors) {
  stream.CreateOutgoingMessage()
      .AppendMarker("STARTED")
      .AppendStrings("ERRORS", errors)
      .AppendMarker("END")
      .Send();
}

void SendStep(MessageStream& stream) {
  constexpr std::array<int32_t, 6> kDate = {2020, 1, 1, 0, 0, 0};
  stream.CreateOutgoingMessage()
      .AppendMarker("STEP")
      .AppendString("POSITION", "MODEL_DEFINITION")
      .AppendDouble("TIME", 0.0)
      .AppendInts("DATE", kDate)
      .AppendMarker("END")
      .Send();
}

void SendGarbage(ByteChannel& controller) {
  const std::string text = std::string(8, '!') + std::string(4096, '*');
  controller.Write(std::as_bytes(std::span(text)));
}

void Refuse(MessageStream& stream) { AcceptSetup(stream, {"no licence", "second reason"}); }

/// Answers the version query, which alone the connector asks before it is content, and no more.
void Vanish(MessageStream& stream) {
  AcceptSetup(stream, {});
  SendStep(stream);
  TakeMessage(stream);
}

int Play(const std::string& fault, TcpConnection& controller) {
  MessageStream stream(controller);
  if (fault == "closes") return EXIT_SUCCESS;
  TakeMessage(stream);
  if (fault == "garbage") SendGarbage(controller);
  if (fault == "refuses" || fault == "patient") Refuse(stream);
  if (fault == "vanishes") Vanish(stream);
  return EXIT_SUCCESS;
}

std::unique_ptr<TcpListener> Listen(uint16_t port, bool isPatient) {
  for (;;) {
    try {
      return std::make_unique<TcpListener>(port);
    } catch (const std::exception&) {
      if (!isPatient) throw;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const char* const option = argc > 2 ? std::strrchr(argv[2], ':') : nullptr;
  if (option == nullptr) return EXIT_FAILURE;
  try {
    std::unique_ptr<TcpConnection> controller;
    {
      const auto port = static_cast<uint16_t>(std::atoi(option + 1));
      controller = Listen(port, argv[1] == std::string("patient"))->Accept(60);
    }
    return controller == nullptr ? EXIT_FAILURE : Play(argv[1], *controller);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "faulty_simulator: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}
