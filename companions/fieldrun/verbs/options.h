#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "fieldrun/case/command_line_error.h"

namespace gantry::fieldrun {

enum class Verb {
  kRun,
  kResume,
  kWells,
  kIdentify,
  kUnits,
  kGet,
  kSet,
  kDo,
  kSave,
  kLoad,
  kVariables,
  kDescribe,
  kConfigure,
  kEdit,
  kExport,
  kReport,
  kReference,
  kCheck,
};

/// What a command line says.
struct Options {
  Verb verb = Verb::kRun;

  std::string caseFile;
  std::string file;
  std::string path;
  std::string value;
  std::string command;
  std::string results;
  std::vector<std::string> paths;
  std::vector<std::string> words;

  std::string module;
  std::string simulator;
  std::string deck;
  std::string output;
  std::string trace;
  std::string script;
  std::string blockFile;
  std::string saveFile;
  std::vector<std::string> wells;
  std::vector<int> readHandles;
  std::vector<std::string> writes;
  std::vector<std::string> additions;
  std::vector<int> deleteHandles;
  int steps = 0;
  int limit = 60;
  int days = 2;
  bool start = false;
  bool noVariables = false;
  bool keepDataset = false;
  bool json = false;
  bool jsonSchema = false;
  bool quiet = false;
  bool watch = false;
};

using OptionTarget = std::variant<std::string Options::*, std::vector<std::string> Options::*,
                                  std::vector<int> Options::*, int Options::*, bool Options::*>;

/// Some verbs, a bit for each.
using VerbSet = uint32_t;

template <class... Verbs>
constexpr VerbSet In(Verbs... verbs) {
  return ((VerbSet{1} << static_cast<unsigned>(verbs)) | ...);
}

/// One option or, without dashes, one positional argument; and the verbs that take it.
struct OptionRow {
  std::string_view name;
  std::string_view meaning;
  OptionTarget target;
  VerbSet verbs;           ///< none: every verb that loads the module
  bool isRequired = true;  ///< of a positional
  int most = 0;            ///< of a number, which is 1 at least
};

struct Session;

/// A verb, and what does it: with the module, or from the command line alone, where false tells of
/// faults in the user's files.
struct VerbRow {
  Verb verb;
  std::string_view name;
  std::string_view meaning;
  std::variant<void (*)(const Session&), bool (*)(const Options&)> action;

  bool NeedsModule() const { return action.index() == 0; }
};

/// The only description of the command line: it parses by these, and prints its help from them.
std::span<const VerbRow> Verbs();
const VerbRow& RowOf(Verb verb);
std::span<const OptionRow> OptionRows();

/// The options, or the exit status with which to end: 0 after help, 2 for a bad command line, whose
/// fault has been told on standard error.
std::variant<Options, int> ParseCommandLine(int argc, const char* const* argv);

}  // namespace gantry::fieldrun
