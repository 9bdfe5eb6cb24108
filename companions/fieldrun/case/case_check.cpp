#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/case_reader.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/case/unknown_name.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

/// The checks of one case. What is wrong is gathered.
class Check {
 public:
  Check(const CaseModel& model, std::vector<Finding>& findings)
      : model_(model), findings_(findings) {}

  void All();

 private:
  template <class Spec>
  void NamesDiffer(const std::vector<Spec>& specs, std::string_view what);
  void Simulator();
  void Time();
  void Tubings();
  void KeysFitKind(const WellSpec& well);
  void Tubing(const WellSpec& well);
  void Injector(const WellSpec& well);
  void Groups();
  void Composition(const WellSpec& well);
  void Fail(int line, const std::string& reason) { findings_.push_back({line, reason}); }

  const CaseModel& model_;
  std::vector<Finding>& findings_;
};

template <class Spec>
void Check::NamesDiffer(const std::vector<Spec>& specs, std::string_view what) {
  std::unordered_set<std::string> names;
  for (const Spec& spec : specs) {
    if (!spec.name.empty() && !names.insert(spec.name).second) {
      Fail(spec.LineOf("name"), fmt::format("there are two {}s \"{}\"", what, spec.name));
    }
  }
}

void Check::Simulator() {
  const SimulatorSpec& simulator = model_.simulator;
  if (simulator.IsOnCluster() && simulator.headNode.empty()) {
    Fail(simulator.LineOf("connection"), "a cluster needs its head_node");
  }
  if (simulator.IsOnCluster() || simulator.deck.empty()) return;
  if (!IsFile(simulator.deck)) {
    Fail(simulator.LineOf("deck"), fmt::format("no such dataset: {}", simulator.deck));
  }
  const std::string name = platform::NameOf(platform::PathOf(simulator.deck).filename());
  if (name.find(' ') != std::string::npos) {
    Fail(simulator.LineOf("deck"),
         fmt::format("the dataset's name can't hold a blank, since a simulator of this "
                     "machine would take it for two: {}",
                     name));
  }
}

void Check::Time() {
  const TimeSpec& time = model_.time;
  const int ways = (time.end ? 1 : 0) + (time.duration ? 1 : 0) + (time.steps ? 1 : 0);
  if (ways != 1) {
    Fail(time.line, "[time] needs one, and only one, of the keys end, duration and steps");
  }
  if (time.start && time.end && !(*time.start < *time.end)) {
    Fail(time.LineOf("end"), "end must lie after start");
  }
}

void Check::KeysFitKind(const WellSpec& well) {
  for (const auto& [key, target] : WellKeys()) {
    const auto line = well.keyLines.find(std::string(key.name));
    if (line == well.keyLines.end() || (key.kinds >> well.kind & 1U) != 0) continue;
    Fail(line->second, fmt::format("{} means nothing for a {}", key.name, KindName(well.Kind())));
  }
}

void Check::Tubing(const WellSpec& well) {
  if (well.tubing.empty()) return;
  const TubingSpec* const tubing = model_.TubingOf(well);
  if (tubing == nullptr) {
    return Fail(well.LineOf("tubing"), UnknownName("tubing", well.tubing, model_.tubings));
  }
  if (!CanTake(well, *tubing)) {
    Fail(well.LineOf("tubing"),
         fmt::format("tubing \"{}\" isn't for {}: {}", tubing->name, well.name,
                     well.IsProducer() ? "its lift table is an injector's"
                                       : "an injector needs a lift table VFPINJ"));
  }
  if (!well.manifoldPressure && !model_.network.manifoldPressure) {
    Fail(well.LineOf("tubing"),
         "a well with a tubing needs a manifold_pressure, of its own or in [network]");
  }
}

void Check::Injector(const WellSpec& well) {
  const bool hasRate = well.waterRate || well.gasRate;
  const bool hasBoth = hasRate && well.bottomHolePressure;
  const bool hasNone = !hasRate && !well.bottomHolePressure && well.tubing.empty();
  if (well.connected && (hasBoth || hasNone)) {
    Fail(well.line,
         fmt::format("injector \"{}\" needs either {} or bottom_hole_pressure", well.name,
                     well.Kind() == WellKind::kGasInjector ? "gas_rate" : "water_rate"));
  }
  Composition(well);
}

void Check::Composition(const WellSpec& well) {
  if (well.composition.empty()) return;
  const double sum = std::accumulate(well.composition.begin(), well.composition.end(), 0.0);
  if (std::abs(sum - 1) > 1e-6) {
    Fail(well.LineOf("composition"),
         fmt::format("the fractions of composition must sum to 1, not {:g}", sum));
  }
  if (well.composition.size() > 100) {
    Fail(well.LineOf("composition"), "composition can have no more than 100 fractions");
  }
}

void Check::Groups() {
  std::unordered_map<std::string, bool> wells;
  for (const WellSpec& well : model_.wells) wells[well.name] = well.connected;
  for (const GroupSpec& group : model_.groups) {
    for (const std::string& name : group.wells) {
      const auto well = wells.find(name);
      if (well == wells.end()) {
        Fail(group.LineOf("wells"), UnknownName("well", name, model_.wells));
      } else if (!well->second) {
        Fail(group.LineOf("wells"), fmt::format("well \"{}\" isn't connected", name));
      }
    }
  }
}

void Check::Tubings() {
  for (const TubingSpec& tubing : model_.tubings) {
    for (const char* key : {"depth", "diameter"}) {
      if (tubing.isSound && tubing.vfp.empty() && !tubing.keyLines.contains(key)) {
        Fail(tubing.line, fmt::format("[tubing] needs the key \"{}\", or vfp", key));
      }
    }
    for (const auto& [key, line] : tubing.keyLines) {
      if (tubing.vfp.empty() ? key != "vfp_table" : key == "name" || key.starts_with("vfp"))
        continue;
      Fail(line,
           fmt::format("{} means nothing {} vfp", key, tubing.vfp.empty() ? "without" : "with"));
    }
    if (tubing.isSound && tubing.length && *tubing.length < tubing.depth) {
      Fail(tubing.LineOf("length"), "length can't be less than depth");
    }
  }
}

void Check::All() {
  Simulator();
  if (model_.time.isSound) Time();
  NamesDiffer(model_.tubings, "tubing");
  NamesDiffer(model_.wells, "well");
  NamesDiffer(model_.groups, "group");
  Tubings();
  for (const WellSpec& well : model_.wells) {
    if (!well.isSound) continue;
    KeysFitKind(well);
    Tubing(well);
    if (!well.IsProducer()) Injector(well);
  }
  Groups();
  for (const EventSpec& event : model_.events) {
    WellSpec change = event.wellChange;
    change.keyLines = event.keyLines;
    Composition(change);
  }
}

}  // namespace

void CheckCase(const CaseModel& model, std::vector<Finding>& findings) {
  Check(model, findings).All();
  CheckEvents(model, findings);
}

}  // namespace gantry::fieldrun
