#include "fieldrun/verbs/options.h"

#include <algorithm>

#include "fieldrun/verbs/verbs.h"

namespace gantry::fieldrun {
namespace {

using enum Verb;

constexpr VerbRow kVerbs[] = {
    {kRun, "run", "Run a field model in lock-step with its simulator", RunCase},
    {kResume, "resume", "Go on with a run behind its last whole step", ResumeCase},
    {kWells, "wells", "Start a case's simulator and list its wells", ListWells},
    {kIdentify, "identify", "Show what the module says of itself", ShowIdentity},
    {kUnits, "units", "List the units of a case, or of the variables that the module reports",
     ListUnits},
    {kGet, "get", "Read properties of a case or its simulator by their paths", GetProperties},
    {kSet, "set", "Write a property of a case or its simulator by its path", SetOneProperty},
    {kDo, "do", "Run a command of the module on a case", DoOneCommand},
    {kSave, "save", "Save a case's settings as the block that a host keeps", SaveBlock},
    {kLoad, "load", "Load a saved block and show what it holds", LoadBlock},
    {kVariables, "variables", "List, add, read, write and delete a case's published variables",
     ServeVariables},
    {kDescribe, "describe", "Write the description of a case's equipment as XML", Describe},
    {kConfigure, "configure", "Open the module's configuration dialog", OpenConfiguration},
    {kEdit, "edit", "Open the case settings dialog", OpenSettings},
    {kExport, "export", "Open the dialog of published variables", OpenExport},
    {kReport, "report", "Make the report of a run, finished or not, from its tables", ReportRun},
    {kReference, "reference", "Print the reference of case files", ShowReference},
    {kCheck, "check",
     "Tell all that is wrong with a case and its deck, or with a simulator's half of the protocol",
     Check},
};

constexpr VerbSet kWithModule = 0;  // every verb that loads it
constexpr VerbSet kWithCase =
    In(kRun, kWells, kGet, kSet, kDo, kSave, kEdit, kVariables, kDescribe, kExport);
constexpr VerbSet kOneShot = In(kGet, kSet, kDo, kSave, kVariables, kDescribe);
constexpr VerbSet kPrinting =
    In(kRun, kResume, kWells, kIdentify, kUnits, kGet, kLoad, kVariables, kCheck);
constexpr VerbSet kWithSimulator =
    In(kRun, kResume, kWells, kGet, kSet, kDo, kSave, kEdit, kVariables, kDescribe, kExport);
constexpr VerbSet kRunning = In(kRun, kResume);

constexpr OptionRow kOptions[] = {
    {"case", "the case file (see fieldrun reference)", &Options::caseFile, kWithCase},
    {"case", "the case file; without one, what else the command line of a simulator holds",
     &Options::words, In(kCheck), false},
    {"case", "the case whose units to list", &Options::caseFile, In(kUnits), false},
    {"path", "path of a property, like Intersect.IsRunning", &Options::path, In(kSet)},
    {"value", "what to write", &Options::value, In(kSet)},
    {"paths", "paths of properties, like Intersect.IsRunning", &Options::paths, In(kGet)},
    {"command", "a command, like \"Intersect.RunToTime(365)\"", &Options::command, In(kDo)},
    {"results", "the folder of a run's results", &Options::results, In(kReport, kResume)},
    {"file", "the file to write or to load", &Options::file, In(kSave, kLoad, kDescribe)},
    {"-m,--module", "the driver module, else the one installed with fieldrun", &Options::module,
     kWithModule},
    {"-t,--trace", "log every call over the module's boundary to this file", &Options::trace,
     kWithModule},
    {"-s,--simulator", "the simulator to start, before what the case or the machine names",
     &Options::simulator, kWithSimulator},
    {"-s,--simulator", "the simulator of the case; without a case, hold this one to the protocol",
     &Options::simulator, In(kCheck)},
    {"--deck", "the deck that a simulator is held to the protocol with, else an empty one",
     &Options::deck, In(kCheck)},
    {"--days", "length of the step that is tried, for who stops at times of its own alone",
     &Options::days, In(kCheck), false, 36500},
    {"--limit", "seconds to wait for each of its answers", &Options::limit, In(kCheck), false,
     86400},
    {"-o,--output", "folder for the results, in place of the case's own", &Options::output,
     In(kRun)},
    {"-n,--steps", "stop after so many steps", &Options::steps, kRunning, false, 1'000'000},
    {"--script", "commands to run between the steps (see docs/fieldrun.md)", &Options::script,
     kRunning},
    {"--watch", "keep the report up to date while the run goes on: the page shows itself anew",
     &Options::watch, kRunning},
    {"-q,--quiet", "no table and no progress bar", &Options::quiet, kRunning},
    {"--start", "start the simulator first", &Options::start, kOneShot},
    {"--block", "load this saved block first, in place of the case's settings", &Options::blockFile,
     kOneShot},
    {"--save", "save the case to this file afterwards", &Options::saveFile, In(kSet, kDo)},
    {"--read", "read the variables of these handles", &Options::readHandles, In(kVariables)},
    {"--write", "write variables, each as HANDLE=VALUE", &Options::writes, In(kVariables)},
    {"--add", "publish variables, each as WELL:LABEL, like \"P1:Oil production rate\"",
     &Options::additions, In(kVariables)},
    {"--delete", "delete the variables of these handles; -1 deletes all", &Options::deleteHandles,
     In(kVariables)},
    {"-w,--well", "only this well; may be given several times", &Options::wells, In(kDescribe)},
    {"--no-variables", "leave the variables of the wells out", &Options::noVariables,
     In(kDescribe)},
    {"--keep-dataset", "don't look for a dataset that has moved", &Options::keepDataset, In(kLoad)},
    {"--json-schema", "as a JSON schema, by which editors complete and check a case file",
     &Options::jsonSchema, In(kReference)},
    {"-j,--json", "print as JSON", &Options::json, kPrinting},
};

}  // namespace

std::span<const VerbRow> Verbs() { return kVerbs; }
const VerbRow& RowOf(Verb verb) { return *std::ranges::find(kVerbs, verb, &VerbRow::verb); }
std::span<const OptionRow> OptionRows() { return kOptions; }

}  // namespace gantry::fieldrun
