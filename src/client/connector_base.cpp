#include "client/connector_base.h"

#include <algorithm>
#include <locale>
#include <sstream>
#include <utility>

#include "client/record_fields.h"
#include "text/failure_text.h"

namespace gantry {

namespace {

/// "The simulator version (2016.1) is too old for the connector being used (2017.2->)"
std::string VersionMismatch(double version, const char* how, const std::string& connectorName) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "The simulator version (" << version << ") is " << how
       << " for the connector being used (" << connectorName << ")";
  return text.str();
}

/// Gives the record's lists, where they are empty, the storage of one that has served.
void LendStorage(ConnectorWellRecord& served, ConnectorWellRecord& record) {
  for (const InflowField& list : kInflowFields) {
    if (!(record.*list.field).empty()) continue;
    std::swap(record.*list.field, served.*list.field);
    (record.*list.field).clear();
  }
  if (record.iprComposition.RowCount() != 0) return;
  std::swap(record.iprComposition, served.iprComposition);
  record.iprComposition.Clear();
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
  auto served = std::exchange(records, {});
  GetWellData(wells, records);
  const size_t lent = std::min(served.size(), records.size());
  for (size_t i = 0; i < lent; ++i) LendStorage(served[i], records[i]);
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
