// tanksim: a small reference simulator that an external controller drives. docs/tanksim.md

#include <cstdio>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/system/system_error.hpp>
#include <fmt/format.h>

#include "client/tcp_connection.h"
#include "simulator/server/controller_session.h"
#include "simulator/server/message_log.h"
#include "simulator/tanks/deck_reader.h"
#include "simulator/tanks/tank_simulator.h"

namespace {

using namespace gantry;
using namespace gantry::simulator;

constexpr int kSecondsForController = 120;
constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

struct Arguments {
  std::string base;
  uint16_t port = 0;
  bool logsMessages = false;
};

/// Takes one "NAME" or "NAME:VALUE" of --dopt; names that it doesn't know are for others.
std::string TakeDriverOption(const std::string& option, Arguments& arguments) {
  const size_t colon = option.find(':');
  const std::string name = option.substr(0, colon);
  if (name == "external_controller_logger") arguments.logsMessages = true;
  if (name != "external_controller_port") return {};
  const std::string value = colon == std::string::npos ? "" : option.substr(colon + 1);
  unsigned port = 0;
  char rest = 0;
  if (std::sscanf(value.c_str(), "%u%c", &port, &rest) != 1 || port < 1 || port > 65535) {
    return "external_controller_port needs a port from 1 to 65535, not '" + value + "'";
  }
  arguments.port = static_cast<uint16_t>(port);
  return {};
}

int Fail(const std::string& reason) {
  fmt::print(stderr, "tanksim: {}\n", reason);
  return kFailed;
}

int Serve(TankSimulator& simulator, const Arguments& arguments) {
  TcpListener listener(arguments.port);
  fmt::print("tanksim: {} waits for its controller on port {}\n", arguments.base, arguments.port);
  std::fflush(stdout);
  const std::unique_ptr<TcpConnection> connection = listener.Accept(kSecondsForController);
  if (!connection) {
    return Fail(fmt::format("no controller came to port {} within {} seconds", arguments.port,
                            kSecondsForController));
  }
  std::unique_ptr<MessageLog> log;
  if (arguments.logsMessages) {
    log = std::make_unique<MessageLog>(*connection, arguments.base + ".ecreplay");
  }
  ByteChannel& channel = log ? static_cast<ByteChannel&>(*log) : *connection;
  try {
    ControllerSession(simulator, channel).Run();
  } catch (const boost::system::system_error& error) {
    return Fail(std::string("the controller has gone without a shutdown: ") + error.what());
  } catch (const std::exception& error) {
    return Fail(std::string("session ended: ") + error.what());
  }
  fmt::print("tanksim: {} ended at {:g} days\n", arguments.base, simulator.Position().days);
  return 0;
}

int Run(const Arguments& arguments) {
  try {
    TankSimulator simulator(ReadDeck(arguments.base + ".afi"));
    return Serve(simulator, arguments);
  } catch (const DeckError& error) {
    fmt::print(stderr, "{}\n", error.what());
    return kFailed;
  } catch (const boost::system::system_error& error) {
    return Fail(fmt::format("can't listen on port {}: {}", arguments.port, error.code().message()));
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("A reference reservoir simulator of tanks, driven by an external controller.",
               "tanksim");
  Arguments arguments;
  std::vector<std::string> driverOptions;
  app.add_option("BASE", arguments.base, "the deck is BASE.afi")->required();
  app.add_option("--dopt", driverOptions,
                 "external_controller_port:PORT (needed), external_controller_logger; others are "
                 "ignored")
      ->allow_extra_args(false);
  app.set_version_flag("--version", "tanksim " TANKSIM_VERSION);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kBadCommandLine;
  }
  for (const std::string& option : driverOptions) {
    const std::string fault = TakeDriverOption(option, arguments);
    if (fault.empty()) continue;
    fmt::print(stderr, "tanksim: {}\n", fault);
    return kBadCommandLine;
  }
  if (arguments.port == 0) {
    fmt::print(stderr, "tanksim: --dopt=external_controller_port:PORT is missing\n");
    return kBadCommandLine;
  }
  return Run(arguments);
}
