#include "fieldrun/run/simulator_start.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_map>

#include <fmt/format.h>

#include "described_toml/near_word.h"
#include "fieldrun/platform/program_output.h"
#include "fieldrun/run/start_watch.h"
#include "platform/dynamic_library.h"
#include "platform/environment.h"
#include "platform/file_path.h"
#include "platform/files.h"

namespace gantry::fieldrun {
namespace {

// The simulator's well types, by the number that the module gives: an injector of no stated phase
// is controlled by water.
constexpr std::array<WellKind, 4> kKindOfType{WellKind::kProducer, WellKind::kWaterInjector,
                                              WellKind::kGasInjector, WellKind::kWaterInjector};

/// What a program says to `--version`: its first line, or an empty text. Only for a program of
/// which it is known that it answers and ends.
std::string AskForVersion(const std::string& program) {
  const ProgramOutput answer = OutputOf(program, {"--version"});
  return answer.status == 0 ? answer.text.substr(0, answer.text.find_first_of("\r\n")) : "";
}

std::string WellPath(const std::string& name, const char* property) {
  return fmt::format("Intersect.StaticWell[{{{}}}].{}", name, property);
}

}  // namespace

void ApplySettings(DriverModel& model, const CaseModel& caseModel,
                   const std::string& fallbackExecutable) {
  const SimulatorSpec& simulator = caseModel.simulator;
  const std::string executable =
      simulator.executable.empty() ? fallbackExecutable : simulator.executable;
  const auto set = [&](const char* field, const std::string& value) {
    model.Set(fmt::format("Intersect.CaseDetails.{}", field), value);
  };
  set("ConnectionMode", std::to_string(simulator.connection));
  set("IPRModel", std::to_string(simulator.inflowModel));
  if (simulator.IsOnCluster()) {
    set("HeadNode", simulator.headNode);
    set("HeadNodePort", std::to_string(simulator.headNodePort));
    set("LinuxIXVersion", std::to_string(simulator.clusterVersion));
  }
  if (!executable.empty()) set("SimExeName", executable);
  set("FileName", simulator.deck);
  set("CloseUnconnectedWells", simulator.closeUnconnectedWells ? "1" : "0");
  set("StdLogging", simulator.standardLog ? "1" : "0");
  set("Parallel", std::to_string(simulator.parallel));
}

void ShareWithSimulator(const CaseModel& caseModel, std::optional<double> resumeAt) {
  const auto results = std::filesystem::absolute(platform::PathOf(caseModel.general.output));
  platform::WriteEnvironment("GANTRY_RESULTS", results.string());
  std::string days;
  for (const EventSpec& event : caseModel.events) {
    if (event.date) days += (days.empty() ? "" : " ") + ToText(*event.date);
  }
  platform::WriteEnvironment("GANTRY_EVENT_DAYS", days);
  platform::WriteEnvironment("GANTRY_RESUME", resumeAt ? fmt::format("{}", *resumeAt) : "");
}

void StartSimulator(DriverModel& model, const CaseModel& caseModel) {
  try {
    const StartWatch watch;
    model.StartSimulator();
  } catch (const DriverFailure& failure) {
    const std::string program = model.Get("Intersect.CaseDetails.SimExeName");
    if (caseModel.simulator.IsOnCluster() || program.empty()) throw;
    throw DriverFailure(fmt::format("{} ({})", failure.what(), program));
  }
}

std::string SimulatorProgram(DriverModel& model, const CaseModel& caseModel) {
  const SimulatorSpec& simulator = caseModel.simulator;
  if (simulator.IsOnCluster()) return "the cluster behind " + simulator.headNode;
  const std::string program = model.Get("Intersect.CaseDetails.SimExeName");
  if (program.empty()) return "the one that the machine's configuration names";
  // Others might take the question for a dataset.
  const bool isOwn =
      platform::DirectoryOf(program) + platform::kPathSeparator == platform::ModuleFolder();
  const std::string version = isOwn ? AskForVersion(program) : "";
  return version.empty() ? program : fmt::format("{} ({})", program, version);
}

WellKind KindInSimulator(DriverModel& model, const DriverWell& well) {
  if (well.isProducer) return WellKind::kProducer;
  const std::string type = model.Get(WellPath(well.name, "SourceType"));
  const size_t number = type.size() == 1 ? static_cast<size_t>(type[0] - '0') : kKindOfType.size();
  if (number >= kKindOfType.size()) {
    throw DriverFailure(fmt::format("Well {} has the unknown type \"{}\"", well.name, type));
  }
  return kKindOfType[number];
}

void SetControlMode(DriverModel& model, const WellSpec& well) {
  if (!well.IsProducer()) return;
  model.Set(WellPath(well.name, "OpMode"), std::to_string(well.control));
}

std::vector<RunWell> MatchWells(DriverModel& model, const CaseModel& caseModel,
                                const std::vector<DriverWell>& simulatorWells) {
  std::unordered_map<std::string, int> handles;
  std::vector<std::string_view> names;
  for (size_t i = 0; i < simulatorWells.size(); ++i) {
    handles.emplace(simulatorWells[i].name, static_cast<int>(i));
    names.push_back(simulatorWells[i].name);
  }
  std::vector<RunWell> wells;
  for (const WellSpec& spec : caseModel.wells) {
    const auto handle = handles.find(spec.name);
    if (handle == handles.end()) {
      caseModel.Fail(spec.LineOf("name"),
                     fmt::format("the simulator has no well \"{}\"{}", spec.name,
                                 toml_reader::DidYouMean(spec.name, names)));
    }
    const DriverWell& well = simulatorWells[static_cast<size_t>(handle->second)];
    const WellKind kind = KindInSimulator(model, well);
    if (kind != spec.Kind()) {
      caseModel.Fail(spec.LineOf("kind"), fmt::format("well \"{}\" is a {} in the simulator",
                                                      spec.name, KindName(kind)));
    }
    if (!spec.connected) continue;
    SetControlMode(model, spec);
    wells.push_back({&spec, handle->second});
  }
  return wells;
}

}  // namespace gantry::fieldrun
