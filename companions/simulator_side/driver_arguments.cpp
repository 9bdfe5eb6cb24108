#include "simulator_side/driver_arguments.h"

#include <cstdio>
#include <optional>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "text/number_text.h"

namespace gantry::simulator {

namespace {

/// A whole number within a range, or nothing.
std::optional<int> ReadNumber(const std::string& text, int least, int most) {
  const auto number = ParseNumber<int>(text);
  return number && *number >= least && *number <= most ? number : std::nullopt;
}

/// Takes one "NAME" or "NAME:VALUE" of --dopt; names that it doesn't know are for others. Returns
/// what is wrong with it.
std::string TakeDriverOption(const std::string& option, DriverArguments& arguments) {
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

std::string TakeDriverOptions(const std::vector<std::string>& options, DriverArguments& arguments) {
  for (const std::string& option : options) {
    std::string fault = TakeDriverOption(option, arguments);
    if (!fault.empty()) return fault;
  }
  if (arguments.port == 0) return "--dopt=external_controller_port:PORT is missing";
  return {};
}

}  // namespace

std::variant<DriverArguments, int> ReadDriverArguments(int argc, char** argv,
                                                       const ProgramDescription& program) {
  CLI::App app(program.purpose, program.name);
  app.allow_windows_style_options(false);  // a path may begin with a slash anywhere
  DriverArguments arguments;
  std::vector<std::string> driverOptions;
  app.add_option("BASE", arguments.base, "the deck is BASE.afi")->required();
  app.add_option(
         "--dopt", driverOptions,
         "external_controller_port:PORT (needed), external_controller_logger (messages go to "
         "BASE.ecreplay), external_controller_wait:SECONDS (20); others are ignored")
      ->allow_extra_args(false);
  for (const ShownText& shown : program.texts) {
    const auto show = [&shown] {
      std::fputs(shown.text().c_str(), stdout);
      throw CLI::Success();
    };
    app.add_flag_callback(shown.flag, show, shown.help);
  }
  if (program.checkDeck) {
    app.add_option_function<std::string>(
        "--check",
        [&program](const std::string& deck) { throw CLI::RuntimeError(program.checkDeck(deck)); },
        "tell all that is wrong with this deck, without a run");
  }
  app.failure_message([&program](const CLI::App* /*app*/, const CLI::Error& error) {
    return fmt::format("{}: {}\nRun with --help for more information.\n", program.name,
                       error.what());
  });
  app.set_version_flag("--version", program.name + " " + program.version);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool isVerdict = dynamic_cast<const CLI::RuntimeError*>(&error) != nullptr;
    const int status = app.exit(error);
    return status == 0 || isVerdict ? status : kBadCommandLine;
  }
  const std::string fault = TakeDriverOptions(driverOptions, arguments);
  if (fault.empty()) return arguments;
  std::fprintf(stderr, "%s: %s\n", program.name.c_str(), fault.c_str());
  return kBadCommandLine;
}

}  // namespace gantry::simulator
