// tanksim: a small reference simulator that an external controller drives. docs/tanksim.md

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/system/system_error.hpp>
#include <fmt/format.h>

#include "client/tcp_connection.h"
#include "platform/file_path.h"
#include "simulator/server/controller_session.h"
#include "simulator/server/message_log.h"
#include "simulator/tanks/deck_reader.h"
#include "simulator/tanks/tank_simulator.h"

namespace {

using namespace gantry;
using namespace gantry::simulator;

constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

struct Arguments {
  std::string base;
  uint16_t port = 0;
  bool logsMessages = false;
  int secondsForController = 120;
};

/// A whole number within a range, or nothing.
std::optional<int> ReadNumber(const std::string& text, int least, int most) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || number < least || number > most) return {};
  return number;
}

/// Takes one "NAME" or "NAME:VALUE" of --dopt; names that it doesn't know are for others. Returns
/// what is wrong with it.
std::string TakeDriverOption(const std::string& option, Arguments& arguments) {
  const size_t colon = option.find(':');
  const std::string name = option.substr(0, colon);
  const std::string value = colon == std::string::npos ? "" : option.substr(colon + 1);
  if (name == "external_controller_logger") arguments.logsMessages = true;
  if (name == "external_controller_port") {
    const auto port = ReadNumber(value, 1, 65535);
    if (!port) return name + " needs a port from 1 to 65535, not '" + value + "'";
    arguments.port = static_cast<uint16_t>(*port);
  }
  if (name == "external_controller_wait") {
    const auto seconds = ReadNumber(value, 0, 86400);
    if (!seconds) return name + " needs seconds from 0 to 86400, not '" + value + "'";
    arguments.secondsForController = *seconds;
  }
  return {};
}

int Fail(const std::string& reason) {
  fmt::print(stderr, "tanksim: {}\n", reason);
  return kFailed;
}

/// The listener is gone once the controller has come: whoever knocks on the port while this
/// simulator ends is to wait for the next one.
std::unique_ptr<TcpConnection> AwaitController(const Arguments& arguments) {
  return TcpListener(arguments.port).Accept(arguments.secondsForController);
}

int Serve(TankSimulator& simulator, const Arguments& arguments) {
  const std::unique_ptr<TcpConnection> connection = AwaitController(arguments);
  if (!connection) {
    return Fail(fmt::format("no controller came to port {} within {} seconds", arguments.port,
                            arguments.secondsForController));
  }
  std::unique_ptr<MessageLog> log;
  if (arguments.logsMessages) {
    log = std::make_unique<MessageLog>(*connection, platform::PathOf(arguments.base + ".ecreplay"));
  }
  ByteChannel& channel = log ? static_cast<ByteChannel&>(*log) : *connection;
  try {
    ControllerSession(simulator, channel).Run();
  } catch (const boost::system::system_error& error) {
    return Fail(std::string("the controller has gone without a shutdown: ") + error.what());
  } catch (const std::exception& error) {
    return Fail(std::string("session ended: ") + error.what());
  }
  return 0;
}

int Run(const Arguments& arguments) {
  try {
    TankSimulator simulator(ReadDeck(platform::PathOf(arguments.base + ".afi")));
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
  app.allow_windows_style_options(false);  // a path may begin with a slash anywhere
  Arguments arguments;
  std::vector<std::string> driverOptions;
  app.add_option("BASE", arguments.base, "the deck is BASE.afi")->required();
  app.add_option(
         "--dopt", driverOptions,
         "external_controller_port:PORT (needed), external_controller_logger (messages go to "
         "BASE.ecreplay), external_controller_wait:SECONDS (120); others are ignored")
      ->allow_extra_args(false);
  app.add_flag_callback(
      "--deck-keys",
      [] {
        fmt::print("{}", DeckReference());
        throw CLI::Success();
      },
      "show the numbers of a deck with units and ranges");
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
