#include <algorithm>
#include <iostream>
#include <span>

#include <CLI/CLI.hpp>

#include "described_toml/near_word.h"
#include "fieldrun/verbs/options.h"

namespace gantry::fieldrun {
namespace {

bool Takes(const OptionRow& row, Verb verb) {
  return row.verbs == 0 ? RowOf(verb).NeedsModule() : (row.verbs & In(verb)) != 0;
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
  if (row.most > 0) option->check(CLI::Range(1, row.most));
}

std::vector<std::string_view> VerbNames() {
  std::vector<std::string_view> names;
  for (const VerbRow& verb : Verbs()) names.push_back(verb.name);
  return names;
}

// The library would only say that a command is missing.
bool NamesUnknownVerb(int argc, const char* const* argv) {
  if (argc < 2 || argv[1][0] == '-') return false;
  const std::vector<std::string_view> names = VerbNames();
  return std::ranges::find(names, std::string_view(argv[1])) == names.end();
}

/// What may have been meant by the first option that the command doesn't have.
std::string NearOption(int argc, const char* const* argv) {
  const auto verbs = Verbs();
  const std::string_view command = argc > 1 ? argv[1] : "";
  const auto verb = std::ranges::find(verbs, command, &VerbRow::name);
  if (verb == verbs.end()) return {};
  std::vector<std::string_view> known{"--help"};
  for (const OptionRow& row : OptionRows()) {
    const size_t dashes = row.name.find("--");
    if (dashes != std::string_view::npos && Takes(row, verb->verb)) {
      known.push_back(row.name.substr(dashes));
    }
  }
  for (const std::string_view word : std::span(argv, static_cast<size_t>(argc))) {
    const std::string_view option = word.substr(0, word.find('='));
    const bool isKnown = std::ranges::find(known, option) != known.end();
    if (option.starts_with("--") && !isKnown) return toml_reader::DidYouMean(option, known);
  }
  return {};
}

}  // namespace

std::variant<Options, int> ParseCommandLine(int argc, const char* const* argv) {
  constexpr int kBadCommandLine = 2;
  if (NamesUnknownVerb(argc, argv)) {
    const std::string near = toml_reader::DidYouMean(argv[1], VerbNames());
    std::cerr << "fieldrun: there is no command \"" << argv[1] << '"'
              << (near.empty() ? "; see fieldrun --help" : near) << '\n';
    return kBadCommandLine;
  }
  Options options;
  CLI::App app(
      "Runs a field model in lock-step with a reservoir simulator, through its driver "
      "module.",
      "fieldrun");
  app.allow_windows_style_options(false);  // a path may begin with a slash anywhere
  app.set_version_flag("--version", "fieldrun " FIELDRUN_VERSION);
  app.failure_message([argc, argv](const CLI::App* /*app*/, const CLI::Error& error) {
    return std::string("fieldrun: ") + error.what() + NearOption(argc, argv) +
           "\nRun with --help for more information.\n";
  });
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
