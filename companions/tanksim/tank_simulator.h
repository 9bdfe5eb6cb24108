#pragma once

#include <map>
#include <optional>

#include "simulator_side/controlled_simulator.h"
#include "simulator_side/state_file.h"
#include "tanksim/tank_run.h"
#include "tanksim/well_items.h"

namespace gantry::simulator {

/// The tank model as an external controller sees it: in the deck's units and the protocol's words.
class TankSimulator : public ControlledSimulator {
 public:
  explicit TankSimulator(Deck deck);

  /// Keeps the run's state in this file from here on, at each stop.
  void KeepStates(const std::filesystem::path& file);
  /// To the state that an earlier run of the deck has kept there at that time, in days. Throws
  /// ResumeRefused.
  void GoOnAt(double days);

  const ModelDescription& Description() const override { return description_; }
  const Strings& WellNames() const override { return wellNames_; }
  RunPosition Position() const override;

  std::optional<size_t> FindWellNumber(std::string_view item) const override;
  double WellNumber(size_t well, size_t item) override;
  std::string_view TypeOf(size_t well) const override { return WordOf(deck_.wells[well].type); }
  std::string_view StatusOf(size_t well) const override {
    return WordOf(run_.Wells()[well].Status());
  }
  InflowTable MeasureInflow(size_t well, std::string_view pressureType, int32_t pointCount,
                            double skewness) override;

  std::vector<WellConstraint> Constraints(size_t well) const override;
  void SetConstraints(size_t well, std::span<const WellConstraint> constraints) override;
  void SetStatus(size_t well, std::string_view status, std::string_view closure) override;
  void SetUptime(size_t well, double fraction) override;
  bool CreateFluidSource(size_t well, const std::string& source, const std::string& phase) override;
  void SetFluidSource(const std::string& source, std::span<const std::string> items,
                      std::span<const double> values, const std::string& phase) override;

  void ContinueToFirstNewton() override { isRunning_ = true; }
  void ContinueUntil(double days) override;
  void Shutdown() override {}

 private:
  Deck deck_;
  TankRun run_;
  WellItems items_;
  ModelDescription description_;
  Strings wellNames_;
  std::map<std::string, size_t> wellOfSource_;
  bool isRunning_ = false;
  std::optional<StateFile> states_;
};

}  // namespace gantry::simulator
