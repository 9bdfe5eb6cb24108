// What a driver may ask of the cluster's controller, one request after another, each behind two
// bytes of length. The simulator is gone, so that a request of the right form is refused.
// Reads: companions/runfactory/controller.cpp companions/runfactory/controller_wells.cpp
// Reads: src/remote/message_reader.cpp

#include <span>

#include "runfactory/controller.h"
#include "runfactory/driver_connection.h"
#include "target.h"

FUZZ_TARGET(controller_request) {
  using namespace gantry::cluster;
  Simulator simulator(20172);
  Controller controller(simulator, [](const std::string&) {});
  std::span<const std::byte> rest = std::as_bytes(std::span(input));
  gantry::fuzz::MayRefuse<DriverBroken>([&] {
    while (rest.size() > 2) {
      uint16_t length = 0;
      std::memcpy(&length, rest.data(), sizeof length);
      rest = rest.subspan(2);
      const auto request = rest.first(std::min<size_t>(length, rest.size()));
      controller.Answer(request);
      rest = rest.subspan(request.size());
    }
  });
}
