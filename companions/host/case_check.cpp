#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

#include "host/case_reader.h"
#include "host/input_file.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

template <class Spec>
void CheckNamesDiffer(const CaseModel& model, const std::vector<Spec>& specs,
                      std::string_view what) {
  std::unordered_set<std::string> names;
  for (const Spec& spec : specs) {
    if (!names.insert(spec.name).second) {
      model.Fail(spec.LineOf("name"), fmt::format("there are two {}s \"{}\"", what, spec.name));
    }
  }
}

void CheckSimulator(const CaseModel& model) {
  const SimulatorSpec& simulator = model.simulator;
  const bool isCluster = simulator.connection == 1;
  if (isCluster && simulator.headNode.empty()) {
    model.Fail(simulator.LineOf("connection"), "a cluster needs its head_node");
  }
  if (isCluster) return;
  if (!IsFile(simulator.deck)) {
    model.Fail(simulator.LineOf("deck"), fmt::format("no such dataset: {}", simulator.deck));
  }
  const std::string name = platform::NameOf(platform::PathOf(simulator.deck).filename());
  if (name.find(' ') != std::string::npos) {
    model.Fail(simulator.LineOf("deck"),
               fmt::format("the dataset's name can't hold a blank, since a simulator of this "
                           "machine would take it for two: {}",
                           name));
  }
}

void CheckTime(const CaseModel& model) {
  const TimeSpec& time = model.time;
  const int ways = (time.end ? 1 : 0) + (time.duration ? 1 : 0) + (time.steps ? 1 : 0);
  if (ways != 1) {
    model.Fail(time.line, "[time] needs one, and only one, of the keys end, duration and steps");
  }
  if (time.start && time.end && !(*time.start < *time.end)) {
    model.Fail(time.LineOf("end"), "end must lie after start");
  }
}

// Keys that mean something for one kind of well only.
struct KindKeys {
  WellKind kind;
  std::vector<std::string> keys;
};

const std::vector<KindKeys>& KeysOfKinds() {
  static const std::vector<KindKeys> kKeys{
      {WellKind::kProducer,
       {"control", "tubing", "manifold_pressure", "min_bottom_hole_pressure", "max_oil",
        "max_water", "max_liquid", "max_gas", "min_oil", "max_water_cut", "max_gas_oil_ratio"}},
      {WellKind::kWaterInjector,
       {"water_rate", "bottom_hole_pressure", "max_bottom_hole_pressure"}},
      {WellKind::kGasInjector,
       {"gas_rate", "bottom_hole_pressure", "max_bottom_hole_pressure", "composition"}},
  };
  return kKeys;
}

void CheckKeysFitKind(const CaseModel& model, const WellSpec& well) {
  static const std::vector<std::string> kForAll{"name", "kind", "connected", "downtime"};
  const std::vector<std::string>& own = KeysOfKinds()[static_cast<size_t>(well.kind)].keys;
  for (const auto& [key, line] : well.keyLines) {
    const bool isOwn = std::find(own.begin(), own.end(), key) != own.end() ||
                       std::find(kForAll.begin(), kForAll.end(), key) != kForAll.end();
    if (isOwn) continue;
    static constexpr const char* kKindWords[] = {"producer", "water injector", "gas injector"};
    model.Fail(line, fmt::format("{} means nothing for a {}", key, kKindWords[well.kind]));
  }
}

void CheckProducer(const CaseModel& model, const WellSpec& well,
                   const std::unordered_set<std::string>& tubings) {
  if (well.tubing.empty()) return;
  if (!tubings.contains(well.tubing)) {
    model.Fail(well.LineOf("tubing"), fmt::format("there is no tubing \"{}\"", well.tubing));
  }
  if (!well.manifoldPressure && !model.network.manifoldPressure) {
    model.Fail(well.LineOf("tubing"),
               "a well with a tubing needs a manifold_pressure, of its own or in [network]");
  }
}

void CheckInjector(const CaseModel& model, const WellSpec& well) {
  const bool hasRate = well.waterRate || well.gasRate;
  if (well.connected && hasRate == well.bottomHolePressure.has_value()) {
    model.Fail(well.line,
               fmt::format("injector \"{}\" needs either {} or bottom_hole_pressure", well.name,
                           well.Kind() == WellKind::kGasInjector ? "gas_rate" : "water_rate"));
  }
  if (well.composition.empty()) return;
  const double sum = std::accumulate(well.composition.begin(), well.composition.end(), 0.0);
  if (std::abs(sum - 1) > 1e-6) {
    model.Fail(well.LineOf("composition"),
               fmt::format("the fractions of composition must sum to 1, not {:g}", sum));
  }
  if (well.composition.size() > 100) {
    model.Fail(well.LineOf("composition"), "composition can have no more than 100 fractions");
  }
}

void CheckGroups(const CaseModel& model) {
  std::unordered_map<std::string, bool> wells;
  for (const WellSpec& well : model.wells) wells[well.name] = well.connected;
  for (const GroupSpec& group : model.groups) {
    for (const std::string& name : group.wells) {
      const auto well = wells.find(name);
      if (well == wells.end()) {
        model.Fail(group.LineOf("wells"), fmt::format("there is no well \"{}\"", name));
      }
      if (!well->second) {
        model.Fail(group.LineOf("wells"), fmt::format("well \"{}\" isn't connected", name));
      }
    }
  }
}

}  // namespace

void CheckCase(const CaseModel& model) {
  CheckSimulator(model);
  CheckTime(model);
  CheckNamesDiffer(model, model.tubings, "tubing");
  CheckNamesDiffer(model, model.wells, "well");
  CheckNamesDiffer(model, model.groups, "group");
  std::unordered_set<std::string> tubings;
  for (const TubingSpec& tubing : model.tubings) {
    if (tubing.length && *tubing.length < tubing.depth) {
      model.Fail(tubing.LineOf("length"), "length can't be less than depth");
    }
    tubings.insert(tubing.name);
  }
  for (const WellSpec& well : model.wells) {
    CheckKeysFitKind(model, well);
    if (well.Kind() == WellKind::kProducer) CheckProducer(model, well, tubings);
    if (well.Kind() != WellKind::kProducer) CheckInjector(model, well);
  }
  CheckGroups(model);
}

}  // namespace gantry::fieldrun
