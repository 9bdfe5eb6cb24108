// A simulator gone wrong, started by the module like any other. The case's base name says how:
//
//   closes      takes its controller and closes at once
//   garbage     answers with bytes that are no frame
//   refuses     refuses the set-up, with a reason
//   patient     waits until it can have its port, then refuses the set-up
//   vanishes    comes up in full, and is gone when it is to advance

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "client/tcp_connection.h"
#include "support/wire_entries.h"

namespace {

using namespace gantry;
using test::Frame;
using test::Parse;

/// The answers that a simulator gives before it goes, one to each message.
std::vector<std::string> AnswersOf(const std::string& fault) {
  const std::string refusal = Frame(Parse("STARTED ERRORS{no licence, second reason} END"));
  const std::string greeting =
      Frame(Parse("STARTED ERRORS{} END")) +
      Frame(Parse("STEP POSITION{MODEL_DEFINITION} TIME[0] DATE<2020, 1, 1, 0, 0, 0> END"));
  const std::map<std::string, std::vector<std::string>> answers = {
      {"garbage", {std::string(8, '!') + std::string(4096, '*')}},
      {"refuses", {refusal}},
      {"patient", {refusal}},
      // The version query is all that the connector asks before it is content.
      {"vanishes", {greeting, ""}}};
  const auto found = answers.find(fault);
  return found == answers.end() ? std::vector<std::string>() : found->second;
}

std::string Read(TcpConnection& controller, size_t size) {
  std::string bytes(size, '\0');
  controller.Read(std::as_writable_bytes(std::span(bytes)));
  return bytes;
}

/// A message of one chunk.
void TakeMessage(TcpConnection& controller) {
  uint64_t size = 0;
  std::memcpy(&size, Read(controller, 2 * sizeof size).data(), sizeof size);
  Read(controller, size);
}

void Play(const std::string& fault, TcpConnection& controller) {
  for (const std::string& answer : AnswersOf(fault)) {
    TakeMessage(controller);
    controller.Write(std::as_bytes(std::span(answer)));
  }
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
    const auto port = static_cast<uint16_t>(std::atoi(option + 1));
    const auto controller = Listen(port, argv[1] == std::string("patient"))->Accept(60);
    if (controller != nullptr) Play(argv[1], *controller);
    return EXIT_SUCCESS;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "faulty_simulator: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}
