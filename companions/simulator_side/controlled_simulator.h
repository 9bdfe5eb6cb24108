#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "client/query_results.h"

namespace gantry::simulator {

/// A request that the simulator can't obey. Its text reaches the controller's user.
class RequestRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Refuses to set a well to what is no number.
inline void RequireNumber(double value, std::string_view what, const std::string& well) {
  if (std::isfinite(value)) return;
  throw RequestRefused(std::string(what) + " of well " + well + " is not a number");
}

/// The places at which a run stops and hears its controller.
enum class Stop { kModelDefinition, kBeginNewton, kEndSimulate };

struct RunPosition {
  Stop stop = Stop::kModelDefinition;
  double days = 0.0;              ///< since the start of the run
  std::array<int32_t, 6> date{};  ///< year, month, day, hour, minute, second
};

/// What doesn't change in a run.
struct ModelDescription {
  std::string version;     ///< begins with the version as a decimal number
  std::string unitSystem;  ///< "ECLIPSE_METRIC" or "ECLIPSE_FIELD"
  std::array<int32_t, 6> startDate{};
  std::string fieldFluidModel;      ///< "BLACKOIL" or "COMPOSITIONAL"
  std::string reservoirFluidModel;  ///< the same words
  Strings componentNames;           ///< empty for a black oil
  std::vector<ReservoirFluidRecord> fluids;
};

/// One limit on a well, as a controller sets it or as the well has it from its deck.
struct WellConstraint {
  std::string item;
  double value = 0.0;
  std::string setter;
};

/// The inflow of one well, measured by the simulator itself: a list of values for each item.
struct InflowTable {
  Strings items;
  std::vector<Doubles> values;
};

/// What a simulator must be able to do to be driven by an external controller. The server calls
/// it from one thread, names wells by their position in `WellNames`, and passes and takes values in
/// the simulator's own unit system. An operation that can't be done throws `RequestRefused`.
class ControlledSimulator {
 public:
  virtual ~ControlledSimulator() = default;

  virtual const ModelDescription& Description() const = 0;
  virtual const Strings& WellNames() const = 0;
  virtual RunPosition Position() const = 0;

  /// The handle of a number that every well has, for the read below; empty for an item that this
  /// simulator doesn't know.
  virtual std::optional<size_t> FindWellNumber(std::string_view item) const = 0;
  /// Answers for the well as it flows under its present limits, without advancing the run.
  virtual double WellNumber(size_t well, size_t item) = 0;
  /// The protocol's words.
  virtual std::string_view TypeOf(size_t well) const = 0;
  virtual std::string_view StatusOf(size_t well) const = 0;
  virtual InflowTable MeasureInflow(size_t well, std::string_view pressureType, int32_t pointCount,
                                    double skewness) = 0;

  /// The limits in force, the controller's and the well's own.
  virtual std::vector<WellConstraint> Constraints(size_t well) const = 0;
  /// Replaces all limits that a controller has set on the well before.
  virtual void SetConstraints(size_t well, std::span<const WellConstraint> constraints) = 0;
  virtual void SetStatus(size_t well, std::string_view status, std::string_view closure) = 0;
  virtual void SetUptime(size_t well, double fraction) = 0;

  /// Attaches a named source of injected fluid to a well; false when the well can't take one.
  virtual bool CreateFluidSource(size_t well, const std::string& source,
                                 const std::string& phase) = 0;
  virtual void SetFluidSource(const std::string& source, std::span<const std::string> items,
                              std::span<const double> values, const std::string& phase) = 0;

  virtual void ContinueToFirstNewton() = 0;
  /// Runs on to a time, or to the end of the run if that comes first.
  virtual void ContinueUntil(double days) = 0;
  virtual void Shutdown() = 0;
};

}  // namespace gantry::simulator
