#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "described_toml/calendar.h"
#include "described_toml/finding.h"
#include "fieldrun/case/quantities.h"
#include "fieldrun/case/vfp_table.h"

namespace gantry::fieldrun {

using toml_reader::Date;
using toml_reader::DateOf;
using toml_reader::Finding;
using toml_reader::FromDayNumber;

/// A case file, or another file of the user's, that can't be used as it stands.
using CaseError = toml_reader::FileError;

/// Where a section and its keys stand in the case file, for messages.
struct Located {
  int line = 0;
  bool isSound = true;  ///< false when one of its keys is at fault
  std::map<std::string, int> keyLines;

  int LineOf(const std::string& key) const;
};

struct GeneralSpec : Located {
  std::string title;
  int units = 0;       ///< a UnitSystem
  std::string output;  ///< folder of the results
};

/// The places of the words in a case file, which are the driver's numbers too.
enum Connection : int { kLocalComputer, kCluster };
enum InflowModel : int { kBlockPressure, kDrainageRegion };

struct SimulatorSpec : Located {
  std::string deck;
  std::string executable;
  int connection = kLocalComputer;
  std::string headNode;
  int headNodePort = 7777;
  int clusterVersion = 100000;
  int parallel = 1;
  int inflowModel = kDrainageRegion;
  bool closeUnconnectedWells = false;
  bool standardLog = false;
  std::string label;
  std::string storeFile;

  bool IsOnCluster() const { return connection == kCluster; }
};

struct TimeSpec : Located {
  std::optional<Date> start;
  std::optional<Date> end;
  std::optional<double> duration;  ///< days
  std::optional<int> steps;
  double stepDays = 0;  ///< 0: calendar months
};

struct NetworkSpec : Located {
  std::optional<double> manifoldPressure;
  std::optional<double> oilGravity;    ///< water = 1
  std::optional<double> gasGravity;    ///< air = 1
  std::optional<double> waterGravity;  ///< water = 1
  bool applyEarly = false;
};

struct TubingSpec : Located {
  std::string name;
  std::string vfp;              ///< file of its lift table; empty: the pressure is computed
  std::optional<int> vfpTable;  ///< number of the table in that file
  std::shared_ptr<const VfpTable> table;
  double depth = 0;
  std::optional<double> length;  ///< along the hole; the depth when the hole is vertical
  double diameter = 0;
  double roughness = 0.0006;
  double wellheadTemperature = 100;
  double bottomTemperature = 200;
};

enum class WellKind { kProducer, kWaterInjector, kGasInjector };

/// "producer", "water injector", "gas injector".
std::string_view KindName(WellKind kind);

struct WellSpec : Located {
  std::string name;
  int kind = 0;  ///< a WellKind
  bool connected = true;
  int control = 0;  ///< the driver's control mode of a producer
  double downtime = 0;

  std::string tubing;
  std::optional<double> manifoldPressure;
  double artificialLift = 0;  ///< in the units of its lift table
  std::optional<double> minBottomHolePressure;
  std::optional<double> maxOil, maxWater, maxLiquid, maxGas;
  std::optional<double> minOil, maxWaterCut, maxGasOilRatio;

  std::optional<double> waterRate, gasRate;
  std::optional<double> bottomHolePressure, maxBottomHolePressure;
  std::vector<double> composition;

  WellKind Kind() const { return static_cast<WellKind>(kind); }
  bool IsProducer() const { return Kind() == WellKind::kProducer; }
};

/// Whether a lift table is of the well's kind; an injector needs one.
bool CanTake(const WellSpec& well, const TubingSpec& tubing);

struct GroupSpec : Located {
  std::string name;
  std::vector<std::string> wells;  ///< none: every connected well
  int method = 0;                  ///< 0 scale all alike, 1 cut the worst first
  std::optional<double> maxOil, maxWater, maxLiquid, maxGas;
  std::optional<double> maxWaterInjection, maxGasInjection;
};

enum class EventAction { kNone = -1, kOpen, kShut, kDrill, kWorkover };

/// A change of what holds of wells, of a group or of the field, on a day or when a quantity passes
/// a value.
struct EventSpec : Located {
  std::optional<Date> date;
  std::string when;  ///< a Condition as it is written
  std::string well;  ///< a well, some, or a group; none of these: the field
  std::vector<std::string> wells;
  std::string group;
  int action = static_cast<int>(EventAction::kNone);
  std::vector<std::string> remove;  ///< keys of what doesn't hold any longer
  std::string note;

  // New values, of which those count whose keys have a line.
  WellSpec wellChange;
  GroupSpec groupChange;

  EventAction Action() const { return static_cast<EventAction>(action); }
  bool IsOfField() const { return well.empty() && wells.empty() && group.empty(); }
  bool Gives(std::string_view key) const { return keyLines.contains(std::string(key)); }
};

/// A field model as its file gives it, in field units, checked as far as can be without the
/// simulator. Paths are absolute.
struct CaseModel {
  std::string file;
  GeneralSpec general;
  SimulatorSpec simulator;
  TimeSpec time;
  NetworkSpec network;
  std::vector<TubingSpec> tubings;
  std::vector<WellSpec> wells;
  std::vector<GroupSpec> groups;
  std::vector<EventSpec> events;
  std::vector<std::string> warnings;  ///< what can hardly be meant, each "file:line: warning: ..."

  UnitSystem Units() const { return static_cast<UnitSystem>(general.units); }
  /// Null for a well without a tubing.
  const TubingSpec* TubingOf(const WellSpec& well) const;
  /// The wells that an event is about; those of its group, or all, that are connected.
  std::vector<std::string> WellsOf(const EventSpec& event) const;
  [[noreturn]] void Fail(int line, const std::string& reason) const;
};

}  // namespace gantry::fieldrun
