#include <algorithm>
#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

#include "client/argument_check.h"
#include "client/intersect_client.h"
#include "client/wire_format.h"

namespace gantry {

namespace {

inline bool IsEnd(const Header& header) {
  if (header.name != "END") return false;
  IncomingMessage::CheckMarker(header);
  return true;
}

/// The one string of an entry whose header has been read.
void AppendOneString(IncomingMessage& reply, const Header& header, std::string_view name,
                     Strings& target) {
  IncomingMessage::CheckNameAndCount(header, name, 1);
  reply.AppendStrings(header, target);
}

std::string ReadOneString(IncomingMessage& reply, std::string_view name) {
  return std::move(reply.ReadStrings(name, 1).front());
}

/// What stands ahead of a well's name in a row, and behind it.
struct RowForm {
  wire::HeaderBytes<sizeof "WELLNAME"> well = wire::EncodeHeader("WELLNAME", 1, HeaderType::CSTR);
  wire::HeaderBytes<sizeof "VALUES"> values;
};

/// Steps over the head of the next row where it is that of this well. Else nothing is read: it may
/// be another's, or none at all.
bool SkipRowHead(IncomingMessage& reply, const RowForm& form, const std::string& well) {
  const uint64_t length = well.size();
  const size_t size = sizeof form.well + sizeof length + length + sizeof form.values;
  if (reply.Rest().size() < size) return false;
  const std::byte* next = reply.Rest().data();
  const auto isNext = [&next](const void* bytes, size_t count) {
    return std::memcmp(std::exchange(next, next + count), bytes, count) == 0;
  };
  const bool isSame = isNext(&form.well, sizeof form.well) && isNext(&length, sizeof length) &&
                      isNext(well.data(), length) && isNext(&form.values, sizeof form.values);
  if (isSame) reply.StepOver(size);
  return isSame;
}

/// The name of the next well, and the header of its values; none behind the last.
std::optional<std::string_view> ReadRowHead(IncomingMessage& reply, const Header& values) {
  const Header header = reply.ReadHeader();
  if (IsEnd(header)) return std::nullopt;
  IncomingMessage::CheckNameAndCount(header, "WELLNAME", 1);
  const std::string_view name = reply.ReadText(header);
  IncomingMessage::CheckHeader(reply.ReadHeader(), values.name, values.count, values.type);
  return name;
}

template <class T>
void NameRow(size_t row, std::string_view name, WellAnswer<T>& answer) {
  if (row < answer.wells.size() && answer.wells[row] == name) return;
  answer.wells.resize(std::max(answer.wells.size(), row + 1));
  answer.wells[row].assign(name);
  answer.sameWells = false;
}

/// The wells of a reply, each with its row, over those that stood in the answer.
template <class T>
void ReadWellRows(IncomingMessage& reply, WellAnswer<T>& answer) {
  constexpr bool kIsNumber = std::is_same_v<T, double>;
  const Header values = {"VALUES", answer.items.size(),
                         kIsNumber ? HeaderType::DOUB : HeaderType::CSTR};
  const RowForm form = {.values = wire::EncodeHeader("VALUES", values.count, values.type)};
  size_t row = 0;
  for (;; ++row) {
    if (row >= answer.wells.size() || !SkipRowHead(reply, form, answer.wells[row])) {
      const std::optional<std::string_view> name = ReadRowHead(reply, values);
      if (!name) break;
      NameRow(row, *name, answer);
    }
    reply.ReadElements(answer.values.Append());
  }
  if (row != answer.wells.size()) answer.sameWells = false;
  answer.wells.resize(row);
}

/// A row of "VALUES" of any length.
void AppendRow(IncomingMessage& reply, RowTable<int32_t>& table) {
  const std::vector<int32_t> row = reply.ReadInts("VALUES");
  table.Flat().insert(table.Flat().end(), row.begin(), row.end());
  table.EndRow();
}

void AppendRow(IncomingMessage& reply, RowTable<std::string>& table) {
  Strings row = reply.ReadStrings("VALUES");
  for (std::string& text : row) table.Flat().push_back(std::move(text));
  table.EndRow();
}

/// The entries of one name, each with its values in the next; gives the header behind them.
Header ReadNamedValues(IncomingMessage& reply, std::string_view entry, uint64_t valueCount,
                       Strings& names, std::vector<Doubles>& values) {
  Header header = reply.ReadHeader();
  while (header.name == entry) {
    AppendOneString(reply, header, entry, names);
    values.push_back(reply.ReadDoubles("VALUES", valueCount));
    header = reply.ReadHeader();
  }
  return header;
}

/// The record whose name stands in `header`, which then holds what follows the record.
ReservoirFluidRecord ReadFluidRecord(IncomingMessage& reply, Header& header) {
  ReservoirFluidRecord record;
  Strings name;
  AppendOneString(reply, header, "FLUIDMODELDNAME", name);
  record.name = std::move(name.front());
  record.eosName = ReadOneString(reply, "EOSNAME");
  record.componentNames = reply.ReadStrings("NCOMPS");
  record.binaryInteraction = reply.ReadDoubles("BIC");
  header = ReadNamedValues(reply, "EOSPROPNAME", record.componentNames.size(), record.propertyNames,
                           record.propertyValues);
  return record;
}

}  // namespace

OutgoingMessage IntersectClientBase::BeginQuery(std::string_view name) {
  return stream_.CreateOutgoingMessage().AppendMarker("QUERY").AppendMarker(name);
}

IncomingMessage IntersectClientBase::Ask(OutgoingMessage message) {
  message.AppendMarker("END").Send();
  return ReceiveReply();
}

IncomingMessage IntersectClientBase::ReceiveReply() {
  IncomingMessage reply = stream_.ReceiveMessage();
  reply.ExpectMarker("REPLY");
  return reply;
}

void IntersectClientBase::FinishReply(IncomingMessage& reply) {
  reply.EndOfMessage();
  receive_ready();
}

OutgoingMessage IntersectClientBase::BeginWellQuery(std::string_view name, const Strings& wells,
                                                    const Strings& items) {
  return BeginQuery(name)
      .AppendStrings("QITEMS", items)
      .AppendStrings("WELNAMES", wells)
      .AppendMarker("END");
}

template <class T>
void IntersectClientBase::ReadWells(WellAnswer<T>& answer) {
  IncomingMessage reply = ReceiveReply();
  answer.sameWells = true;
  answer.items.clear();
  const Header header = reply.ReadHeader();
  if (IsEnd(header)) {
    answer.sameWells = answer.wells.empty();
    answer.wells.clear();
    answer.values.Begin(0);
  } else {
    IncomingMessage::CheckNameAndCount(header, "QITEMS", header.count);
    reply.AppendStrings(header, answer.items);
    answer.values.Begin(answer.items.size());
    ReadWellRows(reply, answer);
  }
  FinishReply(reply);
}

template <class Result>
Result IntersectClientBase::QueryReservoir(std::string_view name, const Strings& items) {
  IncomingMessage reply = Ask(BeginQuery(name).AppendStrings("QITEMS", items));
  Result result;
  for (Header header = reply.ReadHeader(); !IsEnd(header); header = reply.ReadHeader()) {
    AppendOneString(reply, header, "QITEM", result.items);
    AppendRow(reply, result.values);
  }
  FinishReply(reply);
  return result;
}

WellQueryResult IntersectClientBase::query_wells(const Strings& wells, const Strings& items) {
  BeginWellQuery("QWELLS", wells, items).Send();
  WellQueryResult result;
  ReadWells(result);
  return result;
}

void IntersectClientBase::encode_well_query(const Strings& wells, const Strings& items,
                                            EncodedMessage& query) {
  BeginWellQuery("QWELLS", wells, items).KeepAs(query);
}

void IntersectClientBase::query_wells(const EncodedMessage& query, WellQueryResult& result,
                                      const Meanwhile& meanwhile) {
  stream_.Send(query);
  if (meanwhile) meanwhile();
  ReadWells(result);
}

void IntersectClientBase::encode_well_query_as_strings(const Strings& wells, const Strings& items,
                                                       EncodedMessage& query) {
  BeginWellQuery("QWELLS_STR", wells, items).KeepAs(query);
}

void IntersectClientBase::query_wells_as_strings(const EncodedMessage& query,
                                                 WellQueryStringResult& result) {
  stream_.Send(query);
  ReadWells(result);
}

WellQueryStringResult IntersectClientBase::query_wells_as_strings(const Strings& wells,
                                                                  const Strings& items) {
  BeginWellQuery("QWELLS_STR", wells, items).Send();
  WellQueryStringResult result;
  ReadWells(result);
  return result;
}

ReservoirQueryResult IntersectClientBase::query_reservoir(const Strings& items) {
  return QueryReservoir<ReservoirQueryResult>("QRESVR", items);
}

ReservoirQueryStringResult IntersectClientBase::query_reservoir_as_strings(const Strings& items) {
  return QueryReservoir<ReservoirQueryStringResult>("QRESVR_STR", items);
}

WellConstraintsResult IntersectClientBase::get_constraints_for_wells(const Strings& wells) {
  IncomingMessage reply = Ask(BeginQuery("QWCONSTRAINTS").AppendStrings("WELNAMES", wells));
  WellConstraintsResult result;
  for (Header header = reply.ReadHeader(); !IsEnd(header); header = reply.ReadHeader()) {
    AppendOneString(reply, header, "WELLNAME", result.wells);
    result.items.push_back(reply.ReadStrings("ITEMS"));
    const size_t itemCount = result.items.back().size();
    result.values.push_back(reply.ReadDoubles("VALUES", itemCount));
    result.setters.push_back(reply.ReadStrings("SETTERS", itemCount));
  }
  FinishReply(reply);
  return result;
}

IPRQueryResult IntersectClientBase::get_ipr_data_for_wells(const Strings& wells,
                                                           const Strings& pressure_types,
                                                           int32_t point_count, double skewness) {
  CheckSizes("get_ipr_data_for_wells", {1, wells.size()}, {2, pressure_types.size()});
  IPRQueryResult result;
  if (point_count == 0 || wells.empty()) return result;
  IncomingMessage reply = Ask(BeginQuery("QIPRDATA")
                                  .AppendStrings("WELNAMES", wells)
                                  .AppendStrings("PRESSURETYPES", pressure_types)
                                  .AppendInt("NPOINTS", point_count)
                                  .AppendDouble("SKEWNESS", skewness));
  Header header = reply.ReadHeader();
  while (!IsEnd(header)) {
    AppendOneString(reply, header, "WELLNAME", result.wells);
    const auto pointCount = static_cast<uint64_t>(reply.ReadInts("NPOINTS", 1).front());
    header = ReadNamedValues(reply, "ITEM", pointCount, result.items.emplace_back(),
                             result.values.emplace_back());
  }
  FinishReply(reply);
  return result;
}

Strings IntersectClientBase::RequestFluidModel(std::optional<std::string_view> entryName) {
  IncomingMessage reply = Ask(BeginQuery("QFMFLUIDMODEL"));
  Strings result;
  const Header header = reply.ReadHeader();
  if (!IsEnd(header)) {
    if (entryName) IncomingMessage::CheckNameAndCount(header, *entryName, header.count);
    result = reply.ReadStrings(header);
    reply.ExpectMarker("END");
  }
  FinishReply(reply);
  return result;
}

std::vector<ReservoirFluidRecord> IntersectClientBase::get_res_fluid_models() {
  IncomingMessage reply = Ask(BeginQuery("QRFLUIDMODEL"));
  std::vector<ReservoirFluidRecord> records;
  Header header = reply.ReadHeader();
  while (!IsEnd(header)) records.push_back(ReadFluidRecord(reply, header));
  FinishReply(reply);
  return records;
}

}  // namespace gantry
