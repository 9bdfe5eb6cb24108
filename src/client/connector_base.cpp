#include "client/connector_base.h"

#include "text/failure_text.h"
#include "text/number_text.h"

namespace gantry {

namespace {

/// "The simulator version (2016.1) is too old for the connector being used (2017.2->)"
std::string VersionMismatch(double version, const char* how, const std::string& connectorName) {
  return "The simulator version (" + FormatDouble(version) + ") is " + how +
         " for the connector being used (" + connectorName + ")";
}

}  // namespace

void CExtConnectorBase::EstablishSession() {
  ConnectToSimulator();
  const double version = GetVersion();
  const bool isTooOld = GetMinimumSimulatorVersion() > version;
  if (isTooOld || version > GetMaximumSimulatorVersion()) {
    const std::string text =
        VersionMismatch(version, isTooOld ? "too old" : "too new", GetConnectorVersionName());
    Shutdown();
    throw ConnectorError(text);
  }
  unitConverter = std::make_unique<UnitConverter>(GetMetricFlag());
}

void CExtConnectorBase::GetWellDataAndIPR(int32_t componentCount, const Strings& wells,
                                          std::vector<ConnectorWellRecord>& records,
                                          bool useBottomHolePressure, double skewness) {
  RenewWellData(wells, records);
  GetWellIPRData(componentCount, wells, records, useBottomHolePressure, skewness);
}

std::unique_ptr<CExtConnectorBase> Establish(std::unique_ptr<CExtConnectorBase> connector) {
  try {
    connector->EstablishSession();
  } catch (const std::exception& failure) {
    throw ConnectorError(FailureText(failure));
  }
  return connector;
}

}  // namespace gantry
