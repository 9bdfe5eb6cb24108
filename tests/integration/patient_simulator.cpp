// A simulator that waits until it can have its port, takes its controller and closes at once.

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <thread>

#include "client/tcp_connection.h"

int main(int argc, char** argv) {
  const char* const option = argc > 2 ? std::strrchr(argv[2], ':') : nullptr;
  if (option == nullptr) return EXIT_FAILURE;
  for (;;) {
    try {
      gantry::TcpListener(static_cast<uint16_t>(std::atoi(option + 1))).Accept(60);
      return EXIT_SUCCESS;
    } catch (const std::exception&) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
}
