#include "client/local_connector.h"

#include <algorithm>
#include <span>
#include <stdexcept>

#include "client/record_fields.h"
#include "client/tcp_connection.h"
#include "client/words.h"

namespace gantry {

namespace {

constexpr uint32_t kConnectTimeoutSeconds = 60;

template <class Lists>
bool HaveSizesOf(const std::vector<Strings>& items, const Lists& lists) {
  return std::ranges::equal(items, lists, {}, &Strings::size, &Lists::value_type::size);
}

}  // namespace

IntersectClientBase& CExtConnectorLocalBase::Client() {
  if (client_ == nullptr) throw std::logic_error("There is no session with the simulator.");
  return *client_;
}

void CExtConnectorLocalBase::ConnectToSimulator() {
  client_ = NewClient(std::make_unique<TcpConnection>(bystanders_));
  ConnectToModel(*client_, "localhost", port_, kConnectTimeoutSeconds);
}

void CExtConnectorLocalBase::Shutdown() {
  if (client_ == nullptr) return;
  try {
    client_->shutdown();
  } catch (const std::exception&) {
    // The simulator may be gone already, and the session ends all the same.
  }
  client_ = nullptr;
}

void CExtConnectorLocalBase::GetEOSProperties(EOSProperties& properties) {
  properties = {};
  properties = QueryEOSProperties(Client());
  for (const EOSField& field : kEOSFields) {
    unitConverter->FromSimulator(std::span(properties.*field.field), field.code);
  }
}

void CExtConnectorLocalBase::PollWellStatuses() {
  Client().query_wells_as_strings({"*"}, {words::kStatus});
}

void CExtConnectorLocalBase::GetWellStatus(std::vector<ConnectorWellStatus>& statuses) {
  statuses.clear();
  statuses = QueryWellStatuses(Client());
}

void CExtConnectorLocalBase::GetWellData(const Strings& wells,
                                         std::vector<ConnectorWellRecord>& records) {
  ReadWellData(wells, records.size(), records);
}

void CExtConnectorLocalBase::RenewWellData(const Strings& wells,
                                           std::vector<ConnectorWellRecord>& records) {
  for (ConnectorWellRecord& record : records) {
    for (const InflowField& list : kInflowFields) (record.*list.field).clear();
    record.iprComposition.Clear();
  }
  ReadWellData(wells, 0, records);
}

void CExtConnectorLocalBase::ReadWellData(const Strings& wells, size_t begin,
                                          std::vector<ConnectorWellRecord>& records) {
  QueryWellData(Client(), wells, wellDataWorkspace_, begin, records);
  for (ConnectorWellRecord& record : std::span(records).subspan(begin)) {
    for (const WellDataField& field : kWellDataFields) {
      record.*field.field = unitConverter->FromSimulator(record.*field.field, field.code);
    }
  }
}

void CExtConnectorLocalBase::GetWellIPRData(int32_t componentCount, const Strings& wells,
                                            std::vector<ConnectorWellRecord>& records,
                                            bool useBottomHolePressure, double skewness) {
  if (wells.empty()) return;
  const InflowRequest request = {.componentCount = componentCount,
                                 .useBottomHolePressure = useBottomHolePressure,
                                 .skewness = skewness,
                                 .inDriverUnits = true};
  MeasureInflow(Client(), *unitConverter, wells, request, inflowWorkspace_, records);
}

void CExtConnectorLocalBase::GetWellVariables(const std::string& well, const Strings& items,
                                              const std::vector<int32_t>& codes, Doubles& values) {
  if (items.size() != codes.size()) {
    throw std::runtime_error("Incorrect argument dimensions passed to GetWellVariables");
  }
  const Doubles received = QueryWellVariables(Client(), well, items);
  for (size_t i = 0; i < received.size(); ++i) {
    values.push_back(unitConverter->FromSimulator(received[i], codes[i]));
  }
}

void CExtConnectorLocalBase::SetWellConstraints(const Strings& wells,
                                                const std::vector<Strings>& items,
                                                const std::vector<Doubles>& values,
                                                const std::vector<std::vector<int32_t>>& codes) {
  if (wells.empty()) return;
  if (items.size() != wells.size() || !HaveSizesOf(items, values) || !HaveSizesOf(items, codes)) {
    throw std::runtime_error("Incorrect argument dimensions passed to SetWellConstraints");
  }
  EncodeConstraints(wells, items);
  for (size_t i = 0; i < values.size(); ++i) {
    for (size_t j = 0; j < values[i].size(); ++j) {
      constraints_.message.Set(i, j, unitConverter->ToSimulator(values[i][j], codes[i][j]));
    }
  }
  Client().set_constraints_for_wells(constraints_.message);
}

void CExtConnectorLocalBase::EncodeConstraints(const Strings& wells,
                                               const std::vector<Strings>& items) {
  if (constraints_.wells == wells && constraints_.items == items) return;
  KeptConstraints fresh = {wells, items, {}};
  std::vector<const Strings*> lists;
  for (const Strings& list : fresh.items) lists.push_back(&list);
  Client().encode_user_constraints(wells, lists, fresh.message);
  constraints_ = std::move(fresh);
}

}  // namespace gantry
