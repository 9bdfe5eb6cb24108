#include "client/simulator_model.h"

#include <algorithm>
#include <stdexcept>

#include "client/intersect_client.h"
#include "client/record_fields.h"
#include "text/number_text.h"

namespace gantry {

namespace {

[[noreturn]] void FailAnswer(const char* about) {
  throw std::runtime_error(std::string("Unexpected answer when querying the ") + about + ".");
}

/// The one row of the one item that was asked for.
template <class Result>
auto OnlyRow(const Result& result, const char* item, const char* about) {
  const bool fits =
      result.items.size() == 1 && result.items[0] == item && result.values.RowCount() == 1;
  if (!fits) FailAnswer(about);
  return result.values[0];
}

/// Stores a property that the table knows; others are passed over.
void StoreProperty(const std::string& name, const Doubles& values, EOSProperties& properties) {
  const auto row = std::ranges::find(kEOSFields, name, &EOSField::property);
  if (row == kEOSFields.end() || name.empty()) return;
  properties.*row->field = values;
  properties.presentProperties |= row->bit;
}

void RequirePosition(const IntersectClientBase& client, AlgorithmicPosition position,
                     const char* failure) {
  if (client.position() != position) throw std::runtime_error(failure);
}

}  // namespace

void ConnectToModel(IntersectClientBase& client, const std::string& host, uint32_t port,
                    uint32_t timeoutSeconds) {
  client.connect(host, port, timeoutSeconds);
  RequirePosition(client, AlgorithmicPosition::MODEL_DEFINITION,
                  "Incorrect algorithmic position after connection");
}

void AdvanceToFirstTimestep(IntersectClientBase& client) {
  client.continue_simulation();
  RequirePosition(client, AlgorithmicPosition::BEGIN_NEWTON,
                  "Incorrect algorithmic position after advancing to first timestep");
}

void LastDate(const IntersectClientBase& client, int32_t& day, int32_t& month, int32_t& year) {
  const auto& date = client.date();
  day = date[2];
  month = date[1];
  year = date[0];
}

bool HasEnded(const IntersectClientBase& client) {
  return client.position() == AlgorithmicPosition::END_SIMULATE;
}

double QueryVersion(IntersectClientBase& client) {
  constexpr const char* kAbout = "INTERSECT version";
  const ReservoirQueryStringResult result = client.query_reservoir_as_strings({"IX_VERSION"});
  const std::span<const std::string> row = OnlyRow(result, "IX_VERSION", kAbout);
  if (row.empty()) FailAnswer(kAbout);
  return ReadDouble(row.front());
}

bool QueryMetricFlag(IntersectClientBase& client) {
  constexpr const char* kAbout = "unit system";
  const ReservoirQueryStringResult result = client.query_reservoir_as_strings({"UNIT_SYSTEM"});
  const std::span<const std::string> row = OnlyRow(result, "UNIT_SYSTEM", kAbout);
  if (row.size() != 1) FailAnswer(kAbout);
  return row.front() == "ECLIPSE_METRIC";
}

void QueryStartDate(IntersectClientBase& client, int32_t& day, int32_t& month, int32_t& year) {
  constexpr const char* kAbout = "INTERSECT start date";
  const ReservoirQueryResult result = client.query_reservoir({"START_DATE"});
  const std::span<const int32_t> row = OnlyRow(result, "START_DATE", kAbout);
  if (row.size() != 6) FailAnswer(kAbout);
  day = row[2];
  month = row[1];
  year = row[0];
}

bool QueryCompositionalFlag(IntersectClientBase& client) {
  constexpr const char* kAbout = "fluid models";
  const ReservoirQueryStringResult result =
      client.query_reservoir_as_strings({"FM_FLUID_MODEL", "RES_FLUID_MODEL"});
  const auto model = std::find(result.items.begin(), result.items.end(), "FM_FLUID_MODEL");
  const bool fits = result.items.size() == 2 && result.values.RowCount() == 2 &&
                    result.values[0].size() == 1 && result.values[1].size() == 1 &&
                    model != result.items.end();
  if (!fits) FailAnswer(kAbout);
  return result.values[static_cast<size_t>(model - result.items.begin())].front() ==
         "COMPOSITIONAL";
}

EOSProperties QueryEOSProperties(IntersectClientBase& client) {
  EOSProperties properties;
  const std::vector<ReservoirFluidRecord> records = client.get_res_fluid_models();
  if (records.empty()) return properties;
  const ReservoirFluidRecord& record = records.front();
  properties.componentCount = static_cast<int32_t>(record.componentNames.size());
  properties.eosName = record.eosName;
  properties.componentNames = record.componentNames;
  for (size_t i = 0; i < record.propertyNames.size(); ++i) {
    StoreProperty(record.propertyNames[i], record.propertyValues[i], properties);
  }
  properties.binaryInteraction = record.binaryInteraction;
  return properties;
}

}  // namespace gantry
