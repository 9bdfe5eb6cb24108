#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "flowlink/deck_composer.h"
#include "flowlink/flow_link.h"
#include "flowlink/link_settings.h"
#include "flowlink/well_controls.h"
#include "simulator/server/controlled_simulator.h"

namespace gantry::flowlink {

/// flow as an external controller sees it.
///
/// The run stands at the end of a report step. What the wells would do under the controller's
/// limits is asked of a fork of flow, once for each different set of limits; the run itself takes
/// the limits when it goes on. Every report step is run under the keywords of the wells that the
/// host has taken over, so that those of the deck never take a well back.
class FlowSimulator : public simulator::ControlledSimulator {
 public:
  /// Starts flow in a folder, which is made, and runs it through its first tiny step. Throws
  /// `LinkFault`.
  FlowSimulator(LinkSettings settings, const std::string& caseName,
                const std::filesystem::path& folder);

  const simulator::ModelDescription& Description() const override { return description_; }
  const Strings& WellNames() const override { return link_->Wells(); }
  simulator::RunPosition Position() const override;

  std::optional<size_t> FindWellNumber(std::string_view item) const override;
  std::optional<size_t> FindWellText(std::string_view item) const override;
  double WellNumber(size_t well, size_t item) override;
  std::string WellText(size_t well, size_t item) override;
  simulator::InflowTable MeasureInflow(size_t well, std::string_view pressureType,
                                       int32_t pointCount, double skewness) override;

  std::vector<simulator::WellConstraint> Constraints(size_t well) const override;
  void SetConstraints(size_t well, std::span<const simulator::WellConstraint> constraints) override;
  void SetStatus(size_t well, std::string_view status, std::string_view closure) override;
  void SetUptime(size_t well, double fraction) override;
  bool CreateFluidSource(size_t well, const std::string& source, const std::string& phase) override;
  void SetFluidSource(const std::string& source, std::span<const std::string> items,
                      std::span<const double> values, const std::string& phase) override;

  void ContinueToFirstNewton() override { isRunning_ = true; }
  void ContinueUntil(double days) override;
  void Shutdown() override { link_->Finish(); }

 private:
  using WellValues = std::vector<std::vector<double>>;

  void StartFlow(const std::string& caseName, const std::filesystem::path& folder);
  void Describe();
  double OwnNumber(size_t well, size_t item) const;
  const WellValues& Values();
  std::string Keywords(bool withUptime) const;
  std::vector<simulator::WellConstraint> DeckLimits(size_t well) const;
  WellKind KindOf(size_t well) const;
  std::string_view StatusOf(size_t well) const;
  HostControls& Take(size_t well);

  LinkSettings settings_;
  ComposedDeck deck_;
  std::unique_ptr<FlowProcess> process_;
  std::unique_ptr<FlowLink> link_;
  simulator::ModelDescription description_;
  std::vector<HostControls> controls_;
  std::map<std::string, WellValues> answers_;  ///< at this stop, by the keywords asked with
  std::string asked_;                          ///< the keywords in force, when `isAskedKnown_`
  bool isAskedKnown_ = false;
  bool isRunning_ = false;
};

}  // namespace gantry::flowlink
