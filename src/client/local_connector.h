#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "client/connector_base.h"
#include "client/inflow_sweep.h"
#include "client/simulator_wells.h"

namespace gantry {

class IntersectClientBase;
class PeerConnection;

/// What both local connectors share: a connector that speaks the simulator's protocol itself, on a
/// port of this machine. Turns the model's questions into queries and setters, checks that the
/// answers fit, and converts units. The version's own class owns its client and adds what differs.
class CExtConnectorLocalBase : public CExtConnectorBase {
 public:
  void ConnectToSimulator() override;
  double GetMinimumSimulatorVersion() override { return 2016.2; }
  double GetMaximumSimulatorVersion() override { return 10000.0; }
  void GetWellIPRData(int32_t componentCount, const Strings& wells,
                      std::vector<ConnectorWellRecord>& records, bool useBottomHolePressure,
                      double skewness) override;
  void GetWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) override;
  void Shutdown() override;
  double GetVersion() override;
  bool GetMetricFlag() override;
  double GetTimeDays() override;
  void GetDate(int32_t& day, int32_t& month, int32_t& year) override;
  void GetStartDate(int32_t& day, int32_t& month, int32_t& year) override;
  bool GetCompositionalFlag() override;
  void GetEOSProperties(EOSProperties& properties) override;
  void PollWellStatuses() override;
  void GetWellStatus(std::vector<ConnectorWellStatus>& statuses) override;
  void GetWellVariables(const std::string& well, const Strings& items,
                        const std::vector<int32_t>& codes, Doubles& values) override;
  void PollWellConstraints() override;
  void SetWellUptime(const Strings& wells, const Doubles& fractions) override;
  void SetWellStatus(const Strings& wells, const Strings& statuses) override;
  void SetWellConstraints(const Strings& wells, const std::vector<Strings>& items,
                          const std::vector<Doubles>& values,
                          const std::vector<std::vector<int32_t>>& codes) override;
  void AdvanceNewton() override;
  void RunUntil(double days) override;
  bool GetTerminationFlag() override;

 protected:
  explicit CExtConnectorLocalBase(uint32_t port, platform::Bystanders bystanders)
      : port_(port), bystanders_(std::move(bystanders)) {}

  /// For a client to the simulator, and to nobody who was there before.
  std::unique_ptr<PeerConnection> NewConnection() const;

 private:
  void RenewWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) override;
  /// The wells' data in the driver's units, from the place `begin` of the records on.
  void ReadWellData(const Strings& wells, size_t begin, std::vector<ConnectorWellRecord>& records);
  /// A new client of the connector's version, owned by its class until `DestroyClient`.
  virtual IntersectClientBase& CreateClient() = 0;
  virtual void DestroyClient() = 0;

  /// The client of a session that stands; logic_error outside of one.
  IntersectClientBase& Client();

  uint32_t port_;
  platform::Bystanders bystanders_;
  IntersectClientBase* client_ = nullptr;
  WellDataWorkspace wellDataWorkspace_;
  InflowWorkspace inflowWorkspace_;
  std::vector<Doubles> convertedValues_;  ///< of the last constraints; only for its storage
};

}  // namespace gantry
