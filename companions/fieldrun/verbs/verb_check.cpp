#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_reader.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/platform/program_output.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

/// Simulators that read a deck without a run: `PROGRAM --check DECK`. Others might begin one.
constexpr std::array<std::string_view, 2> kCheckers = {"tanksim", "flowlink"};

struct FileFinding {
  std::string file;
  Finding finding;
};

/// With "warning: " before the text of a warning, as simulators say it too.
Finding ReadFinding(int line, const std::string& text) {
  constexpr std::string_view kWarning = "warning: ";
  if (!text.starts_with(kWarning)) return {line, text};
  return {line, text.substr(kWarning.size()), false};
}

/// A line "file:line: reason" of a simulator that has checked its deck. A drive's colon is part of
/// the file's name.
FileFinding ParseLine(const std::string& text, const std::string& deck) {
  for (size_t at = text.find(':'); at != std::string::npos; at = text.find(':', at + 1)) {
    int line = 0;
    const char* const end = text.data() + text.size();
    const auto number = std::from_chars(text.data() + at + 1, end, line);
    if (number.ec != std::errc() || end - number.ptr < 2 || *number.ptr != ':') continue;
    return {text.substr(0, at), ReadFinding(line, std::string(number.ptr + 2, end))};
  }
  return {deck, {1, text}};
}

std::string SimulatorOf(const CaseModel& model, const Options& options) {
  if (!options.simulator.empty()) return options.simulator;
  if (!model.simulator.executable.empty()) return model.simulator.executable;
  const std::string fallback = DefaultSimulator();
  return fallback.empty() ? MachineSimulator() : fallback;
}

void CheckDeck(const CaseModel& model, const Options& options, std::vector<FileFinding>& all) {
  const SimulatorSpec& simulator = model.simulator;
  if (simulator.IsOnCluster() || !IsFile(simulator.deck)) return;
  const std::string program = SimulatorOf(model, options);
  const bool isPath = platform::PathOf(program).has_parent_path();
  if (isPath && !IsFile(program)) {
    all.push_back(
        {model.file,
         {simulator.LineOf("executable"), fmt::format("no such simulator: {}", program)}});
    return;
  }
  const std::string name = platform::NameOf(platform::PathOf(program).stem());
  if (std::ranges::find(kCheckers, name) == kCheckers.end()) return;
  const ProgramOutput output = OutputOf(program, {"--check", simulator.deck});
  std::istringstream lines(output.text);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) all.push_back(ParseLine(line, simulator.deck));
  }
  if (output.status != 0 && output.text.empty()) {
    all.push_back({simulator.deck, {1, fmt::format("{} couldn't check it", program)}});
  }
}

void PrintFindings(const std::vector<FileFinding>& all, bool asJson) {
  std::vector<Json> rows;
  for (const auto& [file, finding] : all) {
    if (!asJson) fmt::print(UserOutput(), "{}\n", finding.In(file));
    rows.push_back({{"file", file},
                    {"line", std::max(finding.line, 1)},
                    {"kind", finding.isError ? "error" : "warning"},
                    {"text", finding.reason}});
  }
  if (asJson) fmt::print(UserOutput(), "{}", JsonText(rows, 2));
}

}  // namespace

bool Check(const Options& options) {
  const bool isOfSimulator = options.words.empty() || !options.deck.empty();
  if (isOfSimulator) {
    CheckSimulator(options);
    return true;
  }
  if (options.words.size() > 1) throw CommandLineError("one case at a time");
  return CheckFiles(options.words.front(), options);
}

bool CheckFiles(const std::string& caseFile, const Options& options) {
  const CheckedCase checked = ReadAndCheckCase(caseFile);
  std::vector<FileFinding> all;
  for (const Finding& finding : checked.findings) all.push_back({caseFile, finding});
  CheckDeck(checked.model, options, all);
  PrintFindings(all, options.json);
  const auto errors = static_cast<size_t>(
      std::ranges::count_if(all, [](const FileFinding& f) { return f.finding.isError; }));
  if (!options.json) {
    fmt::print(UserOutput(), "{}: {}, {}\n", caseFile, Counted(errors, "error"),
               Counted(all.size() - errors, "warning"));
  }
  return errors == 0;
}

}  // namespace gantry::fieldrun
