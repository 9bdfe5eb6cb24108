#include <algorithm>
#include <iostream>

#include <CLI/CLI.hpp>

#include "host/options.h"

namespace gantry::fieldrun {
namespace {

bool Takes(const OptionRow& row, Verb verb) {
  if (row.verbs.empty()) return verb != Verb::kReference;
  return std::find(row.verbs.begin(), row.verbs.end(), verb) != row.verbs.end();
}

void AddTo(CLI::App& app, const OptionRow& row, Options& options) {
  const std::string name(row.name);
  const std::string meaning(row.meaning);
  const bool isPositional = name.front() != '-';
  CLI::Option* option = std::visit(
      [&](auto member) -> CLI::Option* {
        if constexpr (std::is_same_v<decltype(member), bool Options::*>) {
          return app.add_flag(name, options.*member, meaning);
        } else {
          return app.add_option(name, options.*member, meaning);
        }
      },
      row.target);
  if (isPositional && row.isRequired) option->required();
  constexpr int kMostSteps = 1'000'000;
  if (name == "-n,--steps") option->check(CLI::Range(1, kMostSteps));
}

// The library would only say that a command is missing.
bool NamesUnknownVerb(int argc, const char* const* argv) {
  if (argc < 2 || argv[1][0] == '-') return false;
  const auto verbs = Verbs();
  return std::none_of(verbs.begin(), verbs.end(),
                      [&](const VerbRow& verb) { return verb.name == argv[1]; });
}

}  // namespace

std::variant<Options, int> ParseCommandLine(int argc, const char* const* argv) {
  constexpr int kBadCommandLine = 2;
  if (NamesUnknownVerb(argc, argv)) {
    std::cerr << "fieldrun: there is no command \"" << argv[1] << "\"; see fieldrun --help\n";
    return kBadCommandLine;
  }
  Options options;
  CLI::App app(
      "Runs a field model in lock-step with a reservoir simulator, through its driver "
      "module.",
      "fieldrun");
  app.allow_windows_style_options(false);  // a path may begin with a slash anywhere
  app.set_version_flag("--version", "fieldrun " FIELDRUN_VERSION);
  app.require_subcommand(1);
  for (const VerbRow& verb : Verbs()) {
    CLI::App* command = app.add_subcommand(std::string(verb.name), std::string(verb.meaning));
    command->callback([&options, kind = verb.verb] { options.verb = kind; });
    for (const OptionRow& row : OptionRows()) {
      if (Takes(row, verb.verb)) AddTo(*command, row, options);
    }
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, std::cout, std::cerr) == 0 ? 0 : kBadCommandLine;
  }
  return options;
}

}  // namespace gantry::fieldrun
