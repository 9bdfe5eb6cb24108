#include <stdexcept>

#include "client/inflow_sweep.h"
#include "client/intersect_client.h"
#include "client/name_index.h"
#include "client/record_fields.h"
#include "client/simulator_wells.h"
#include "remote/remote_message.h"
#include "runfactory/controller.h"
#include "runfactory/driver_connection.h"

namespace gantry::cluster {

namespace {

constexpr size_t kTextSize = 4;
/// A driver's records hold no more than a tenth of this.
constexpr int32_t kMostComponents = 1000;

/// The records in the order of `wells`; a driver matches them by position.
std::vector<ConnectorWellRecord> InOrderOf(const Strings& wells,
                                           std::vector<ConnectorWellRecord> records) {
  NameIndex index;
  for (const ConnectorWellRecord& record : records) index.Add(record.name);
  std::vector<ConnectorWellRecord> ordered;
  ordered.reserve(wells.size());
  for (const std::string& well : wells) {
    const std::optional<size_t> place = index.Find(well);
    if (!place) throw std::runtime_error("the simulator tells nothing of the well " + well);
    ordered.push_back(records[*place]);
  }
  return ordered;
}

}  // namespace

const ConnectorWellRecord& Controller::NextOf(std::vector<ConnectorWellRecord>& records) {
  if (next_ >= records.size()) throw std::runtime_error("no further well was asked for");
  return records[next_++];
}

void Controller::GetWellStatus(MessageReader&, MessageWriter& results) {
  const std::vector<ConnectorWellStatus> statuses = QueryWellStatuses(Client());
  results.PutInt(static_cast<int32_t>(statuses.size()));
  for (const ConnectorWellStatus& status : statuses) {
    for (const std::string* text : {&status.name, &status.type, &status.status}) {
      results.PutText(*text);
    }
  }
}

void Controller::GetWellData(MessageReader& request, MessageWriter& results) {
  const Strings wells = GetTexts(request);
  std::vector<ConnectorWellRecord> records;
  QueryWellData(Client(), wells, wellDataWorkspace_, 0, records);
  data_ = InOrderOf(wells, std::move(records));
  inflow_.clear();
  next_ = 0;
  results.PutInt(static_cast<int32_t>(data_.size()));
}

void Controller::GetWellDataOfOne(MessageReader&, MessageWriter& results) {
  const ConnectorWellRecord& record = NextOf(data_);
  results.PutText(record.status);
  for (const WellDataField& number : kWellDataFields) results.PutDouble(record.*number.field);
}

void Controller::GetWellIPRData(MessageReader& request, MessageWriter& results) {
  InflowRequest inflow;
  inflow.componentCount = request.GetInt();
  if (inflow.componentCount > kMostComponents) {
    throw DriverBroken("the driver asks for " + std::to_string(inflow.componentCount) +
                       " components");
  }
  const Strings wells = GetTexts(request);
  inflow.useBottomHolePressure = request.GetByte() != 0;
  inflow.skewness = request.GetDouble();
  std::vector<ConnectorWellRecord> records(wells.size());
  for (size_t i = 0; i < wells.size(); ++i) records[i].name = wells[i];
  MeasureInflow(Client(), Units(), wells, inflow, inflowWorkspace_, records);
  data_.clear();
  inflow_ = std::move(records);
  withCompositions_ = inflow.componentCount > 0;
  next_ = 0;
  results.PutInt(static_cast<int32_t>(inflow_.size()));
  results.PutInt(kSweepRungs);
}

void Controller::GetWellIPRDataOfOne(MessageReader&, MessageWriter& results) {
  const ConnectorWellRecord& record = NextOf(inflow_);
  for (const InflowField& list : kInflowFields) PutDoubles(results, record.*list.field);
  if (!withCompositions_) return;
  for (size_t i = 0; i < record.iprComposition.RowCount(); ++i) {
    PutDoubles(results, record.iprComposition[i]);
  }
}

void Controller::GetWellVariables(MessageReader& request, MessageWriter& results) {
  const std::string well = request.GetText();
  PutDoubles(results, QueryWellVariables(Client(), well, GetTexts(request)));
}

void Controller::SetWellStatus(MessageReader& request, MessageWriter&) {
  const size_t wellCount = request.GetCount(kTextSize);
  const size_t statusCount = request.GetCount(kTextSize);
  const Strings wells = GetTexts(request, wellCount);
  SetStatusOfWells(Client(), wells, GetTexts(request, statusCount));
}

void Controller::SetWellUptime(MessageReader& request, MessageWriter&) {
  const size_t wellCount = request.GetCount(kTextSize);
  const size_t fractionCount = request.GetCount(sizeof(double));
  const Strings wells = GetTexts(request, wellCount);
  request.Require(fractionCount, sizeof(double));
  Doubles fractions(fractionCount);
  request.GetDoubleArray(fractions);
  SetUptimeOfWells(Client(), wells, fractions);
}

void Controller::SetWellConstraints(MessageReader& request, MessageWriter&) {
  const Strings wells = GetTexts(request);
  const std::vector<Strings> items = GetTextRows(request);
  SetConstraintsOfWells(Client(), wells, items, GetDoubleRows(request));
}

void Controller::SetInjectionSource(MessageReader& request, MessageWriter& results) {
  const std::string well = request.GetText();
  const std::string source = request.GetText();
  results.PutByte(simulator_.SetInjectionSource(well, source) ? 1 : 0);
}

void Controller::SetWellInjectionComposition(MessageReader& request, MessageWriter&) {
  const Strings sources = GetTexts(request);
  simulator_.SetInjectionCompositions(sources, GetDoubleRows(request));
}

}  // namespace gantry::cluster
