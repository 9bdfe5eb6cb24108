#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace gantry::simulator {

/// What the driver says on the command line of a simulator that it starts:
/// BASE --dopt=external_controller_port:PORT, and what else it may ask for.
struct DriverArguments {
  std::string base;  ///< of the deck's name, and of what is written beside the deck
  uint16_t port = 0;
  bool logsMessages = false;
  int secondsForController = 20;
};

/// A flag that shows a text and ends the program.
struct ShownText {
  std::string flag;
  std::string help;
  std::function<std::string()> text;
};

struct ProgramDescription {
  std::string name;
  std::string purpose;
  std::string version;
  std::vector<ShownText> texts;
  /// When set, `--check DECK` reads a deck and ends the program: tells what is wrong with it on
  /// standard output, a line "file:line: reason" each, and returns the exit status.
  std::function<int(const std::string& deck)> checkDeck = {};
};

constexpr int kRunFailed = 1;
constexpr int kBadCommandLine = 2;

/// Reads the command line; an exit status instead when the program is to end at once, after the
/// help or the fault has been shown.
std::variant<DriverArguments, int> ReadDriverArguments(int argc, char** argv,
                                                       const ProgramDescription& program);

}  // namespace gantry::simulator
