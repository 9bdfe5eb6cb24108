#include <algorithm>
#include <optional>

#include "client/name_index.h"
#include "client/record_fields.h"
#include "remote/ext_connector_remote.h"

namespace gantry {

namespace {

constexpr size_t kEmptyListSize = 4;
constexpr size_t kWellStatusSize = 3 * kEmptyListSize;  ///< of a well whose three texts are empty

/// How many records a reply announces, in place of the number of wells asked for.
size_t RecordCount(MessageReader& reply, size_t asked) {
  const int32_t count = reply.GetInt();
  if (count <= 0) return 0;
  if (static_cast<size_t>(count) > asked) throw MessageOverrun();
  return static_cast<size_t>(count);
}

}  // namespace

void CExtConnectorRemote::GetWellStatus(std::vector<ConnectorWellStatus>& statuses) {
  statuses.clear();
  Ask(Routine::kGetWellStatus, {}, [&](MessageReader& reply) {
    const size_t count = reply.GetCount(kWellStatusSize);
    statuses.reserve(count);
    for (size_t i = 0; i < count; ++i) {
      ConnectorWellStatus& status = statuses.emplace_back();
      status.name = reply.GetText();
      status.type = reply.GetText();
      status.status = reply.GetText();
    }
  });
}

void CExtConnectorRemote::GetWellData(const Strings& wells,
                                      std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return;
  MessageWriter request;
  PutTexts(request, wells);
  size_t count = 0;
  Ask(Routine::kGetWellData, request, [&](MessageReader& reply) {
    records.clear();
    count = RecordCount(reply, wells.size());
  });
  for (size_t i = 0; i < count; ++i) {
    ConnectorWellRecord record;
    record.name = wells[i];
    ReadWellData(record);
    records.push_back(std::move(record));
  }
}

void CExtConnectorRemote::ReadWellData(ConnectorWellRecord& record) {
  Ask(Routine::kGetWellDataOfOne, {}, [&](MessageReader& reply) {
    record.status = reply.GetText();
    for (const WellDataField& element : kWellDataFields) {
      record.*element.field = unitConverter->FromSimulator(reply.GetDouble(), element.code);
    }
  });
}

void CExtConnectorRemote::GetWellIPRData(int32_t componentCount, const Strings& wells,
                                         std::vector<ConnectorWellRecord>& records,
                                         bool useBottomHolePressure, double skewness) {
  if (wells.empty()) return;
  MessageWriter request;
  request.PutInt(componentCount);
  PutTexts(request, wells);
  request.PutByte(useBottomHolePressure ? 1 : 0);
  request.PutDouble(skewness);
  size_t count = 0;
  int32_t points = 0;
  Ask(Routine::kGetWellIPRData, request, [&](MessageReader& reply) {
    count = RecordCount(reply, wells.size());
    points = std::max(0, reply.GetInt());
  });
  NameIndex index;
  for (const ConnectorWellRecord& record : records) index.Add(record.name);
  const size_t compositions = componentCount > 0 ? static_cast<size_t>(points) : 0;
  for (size_t i = 0; i < count; ++i) ReadInflow(wells[i], index, records, compositions);
}

void CExtConnectorRemote::ReadInflow(const std::string& well, const NameIndex& index,
                                     std::vector<ConnectorWellRecord>& records,
                                     size_t compositions) {
  Ask(Routine::kGetWellIPRDataOfOne, {}, [&](MessageReader& reply) {
    const std::optional<size_t> position = index.Find(well);
    if (!position) {
      throw std::runtime_error("Error in routine: IX_GETWELLIPRDATA_SUB). Unknown well returned.");
    }
    ConnectorWellRecord& record = records[*position];
    for (const InflowField& element : kInflowFields) {
      Doubles& values = record.*element.field;
      const size_t begin = values.size();
      GetDoubles(reply, values);
      unitConverter->FromSimulator(std::span(values).subspan(begin), element.code);
    }
    reply.Require(compositions, kEmptyListSize);
    for (size_t i = 0; i < compositions; ++i) {
      GetDoubles(reply, record.iprComposition.Flat());
      record.iprComposition.EndRow();
    }
  });
}

void CExtConnectorRemote::GetWellVariables(const std::string& well, const Strings& items,
                                           const std::vector<int32_t>& codes, Doubles& values) {
  MessageWriter request;
  request.PutText(well);
  PutTexts(request, items);
  const size_t begin = values.size();
  AskUnacknowledged(Routine::kGetWellVariables, request,
                    [&](MessageReader& reply) { GetDoubles(reply, values); });
  const std::span<double> received = std::span(values).subspan(begin);
  if (received.size() != codes.size()) {
    throw std::runtime_error(
        "Communication error with remote Intersect controller (Routine: IX_GETWELLVAR). Results "
        "not consistent with input data.");
  }
  for (size_t i = 0; i < codes.size(); ++i) {
    received[i] = unitConverter->FromSimulator(received[i], codes[i]);
  }
}

void CExtConnectorRemote::SetWellStatus(const Strings& wells, const Strings& statuses) {
  MessageWriter request;
  request.PutInt(static_cast<int32_t>(wells.size())).PutInt(static_cast<int32_t>(statuses.size()));
  for (const std::string& well : wells) request.PutText(well);
  for (const std::string& status : statuses) request.PutText(status);
  Do(Routine::kSetWellStatus, request);
}

void CExtConnectorRemote::SetWellUptime(const Strings& wells, const Doubles& fractions) {
  MessageWriter request;
  request.PutInt(static_cast<int32_t>(wells.size())).PutInt(static_cast<int32_t>(fractions.size()));
  for (const std::string& well : wells) request.PutText(well);
  request.PutDoubleArray(fractions);
  Do(Routine::kSetWellUptime, request);
}

void CExtConnectorRemote::SetWellConstraints(const Strings& wells,
                                             const std::vector<Strings>& items,
                                             const std::vector<Doubles>& values,
                                             const std::vector<std::vector<int32_t>>& codes) {
  std::vector<Doubles> converted = values;
  for (size_t row = 0; row < std::min(converted.size(), codes.size()); ++row) {
    const size_t length = std::min(converted[row].size(), codes[row].size());
    for (size_t i = 0; i < length; ++i) {
      converted[row][i] = unitConverter->ToSimulator(converted[row][i], codes[row][i]);
    }
  }
  MessageWriter request;
  PutTexts(request, wells);
  PutTextRows(request, items);
  PutDoubleRows(request, converted);
  Do(Routine::kSetWellConstraints, request);
}

}  // namespace gantry
