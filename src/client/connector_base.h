#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "client/connector_records.h"
#include "client/query_results.h"
#include "client/unit_converter.h"
#include "platform/port_listeners.h"

namespace gantry {

/// The plain exception of a connector that couldn't be made.
class ConnectorError : public std::exception {
 public:
  explicit ConnectorError(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

/// The one door through which the model talks to a running simulator. Values are in the driver's
/// units on this side; a connector converts. Called from one thread at a time; each call blocks
/// until the simulator has answered. Failures are standard exceptions whose text is fit for the
/// user, and the session isn't used after one. The order of the operations is part of the design.
class CExtConnectorBase {
 public:
  virtual void ConnectToSimulator() = 0;
  virtual double GetMinimumSimulatorVersion() = 0;
  virtual double GetMaximumSimulatorVersion() = 0;
  virtual std::string GetConnectorVersionName() = 0;
  /// Appends an inflow table to each of `records`, which stand in the order of `wells`.
  virtual void GetWellIPRData(int32_t componentCount, const Strings& wells,
                              std::vector<ConnectorWellRecord>& records, bool useBottomHolePressure,
                              double skewness) = 0;
  /// Appends one record for each well.
  virtual void GetWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) = 0;
  virtual ~CExtConnectorBase() = default;
  /// Ends the session; nothing may be called afterwards.
  virtual void Shutdown() = 0;
  virtual double GetVersion() = 0;
  virtual bool GetMetricFlag() = 0;
  virtual double GetTimeDays() = 0;
  virtual void GetDate(int32_t& day, int32_t& month, int32_t& year) = 0;
  virtual void GetStartDate(int32_t& day, int32_t& month, int32_t& year) = 0;
  virtual bool GetCompositionalFlag() = 0;
  virtual void GetEOSProperties(EOSProperties& properties) = 0;
  /// False when the simulator, or the connector's version, knows no such source.
  virtual bool SetInjectionSource(const std::string& well, const std::string& source) = 0;
  virtual void SetWellInjectionComposition(const Strings& sources,
                                           const std::vector<Doubles>& fractions) = 0;
  virtual void PollWellStatuses() = 0;
  virtual void GetWellStatus(std::vector<ConnectorWellStatus>& statuses) = 0;
  /// Appends the value of each item, converted by the code at the same place.
  virtual void GetWellVariables(const std::string& well, const Strings& items,
                                const std::vector<int32_t>& codes, Doubles& values) = 0;
  virtual void PollWellConstraints() = 0;
  virtual void SetWellUptime(const Strings& wells, const Doubles& fractions) = 0;
  virtual void SetWellStatus(const Strings& wells, const Strings& statuses) = 0;
  virtual void SetWellConstraints(const Strings& wells, const std::vector<Strings>& items,
                                  const std::vector<Doubles>& values,
                                  const std::vector<std::vector<int32_t>>& codes) = 0;
  virtual void AdvanceNewton() = 0;
  virtual void RunUntil(double days) = 0;
  virtual bool GetTerminationFlag() = 0;

  /// Connects, checks that simulator and connector fit together, and makes the unit converter.
  void EstablishSession();
  /// `GetWellData`, then `GetWellIPRData` on the same records, which take the place of what stands
  /// in `records`. The storage of those of an earlier call, which with many wells takes long to
  /// find anew, is used again where a connector can.
  void GetWellDataAndIPR(int32_t componentCount, const Strings& wells,
                         std::vector<ConnectorWellRecord>& records, bool useBottomHolePressure,
                         double skewness);

 protected:
  /// `GetWellData` in place of what stands in `records`.
  virtual void RenewWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) {
    records.clear();
    GetWellData(wells, records);
  }

  /// Null until `EstablishSession` has come to its end.
  std::unique_ptr<UnitConverter> unitConverter;
};

/// Runs `EstablishSession` on a new connector and hands it on. Any standard exception becomes a
/// `ConnectorError` of the same text, and the connector is destroyed.
std::unique_ptr<CExtConnectorBase> Establish(std::unique_ptr<CExtConnectorBase> connector);

/// Version codes: the simulator's version times ten.
inline constexpr int32_t kMostRecentVersion = 100000;
inline constexpr int32_t kVersion2016_2 = 20162;
inline constexpr int32_t kVersion2017_2 = 20172;

/// The connector for a simulator on this machine: a code of 20172 or more takes the newer one. Who
/// listened on the port before the simulator was started isn't taken for it.
std::unique_ptr<CExtConnectorBase> CreateLocalConnector(int32_t versionCode, uint32_t port,
                                                        platform::Bystanders bystanders = {});

}  // namespace gantry
