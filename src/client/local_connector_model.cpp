#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "client/intersect_client.h"
#include "client/local_connector.h"

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

/// A leading decimal number in any locale; what follows it is ignored, and no number is 0.
double LeadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Where a property of the equation of state goes, and in which unit it comes.
struct EOSProperty {
  const char* name;
  std::vector<double> EOSProperties::*field;
  int32_t code;
  uint32_t bit;
};

constexpr std::array<EOSProperty, 10> kEOSProperties = {{
    {"Molecular weight", &EOSProperties::molecularWeight, kNoUnit, EOSProperties::kMolecularWeight},
    {"TCrit", &EOSProperties::criticalTemperature, kTemperature,
     EOSProperties::kCriticalTemperature},
    {"PCrit", &EOSProperties::criticalPressure, kPressure, EOSProperties::kCriticalPressure},
    {"VCRIT", &EOSProperties::criticalVolume, kCriticalVolume, EOSProperties::kCriticalVolume},
    {"Acentric factor", &EOSProperties::acentricFactor, kNoUnit, EOSProperties::kAcentricFactor},
    {"BP", &EOSProperties::boilingPoint, kTemperature, EOSProperties::kBoilingPoint},
    {"VSHIFT", &EOSProperties::volumeShift, kNoUnit, EOSProperties::kVolumeShift},
    {"OMEGAA", &EOSProperties::omegaA, kNoUnit, EOSProperties::kOmegaA},
    {"OMEGAB", &EOSProperties::omegaB, kNoUnit, EOSProperties::kOmegaB},
    {"Parachor", &EOSProperties::parachor, kNoUnit, EOSProperties::kParachor},
}};

/// Stores a property that the table knows; others are passed over.
void StoreProperty(const std::string& name, const Doubles& values, const UnitConverter& units,
                   EOSProperties& properties) {
  for (const EOSProperty& property : kEOSProperties) {
    if (name != property.name) continue;
    std::vector<double>& field = properties.*property.field;
    field = values;
    units.FromSimulator(std::span(field), property.code);
    properties.presentProperties |= property.bit;
    return;
  }
}

}  // namespace

double CExtConnectorLocalBase::GetVersion() {
  constexpr const char* kAbout = "INTERSECT version";
  const ReservoirQueryStringResult result = Client().query_reservoir_as_strings({"IX_VERSION"});
  const std::span<const std::string> row = OnlyRow(result, "IX_VERSION", kAbout);
  if (row.empty()) FailAnswer(kAbout);
  return LeadingNumber(row.front());
}

bool CExtConnectorLocalBase::GetMetricFlag() {
  constexpr const char* kAbout = "unit system";
  const ReservoirQueryStringResult result = Client().query_reservoir_as_strings({"UNIT_SYSTEM"});
  const std::span<const std::string> row = OnlyRow(result, "UNIT_SYSTEM", kAbout);
  if (row.size() != 1) FailAnswer(kAbout);
  return row.front() == "ECLIPSE_METRIC";
}

void CExtConnectorLocalBase::GetStartDate(int32_t& day, int32_t& month, int32_t& year) {
  constexpr const char* kAbout = "INTERSECT start date";
  const ReservoirQueryResult result = Client().query_reservoir({"START_DATE"});
  const std::span<const int32_t> row = OnlyRow(result, "START_DATE", kAbout);
  if (row.size() != 6) FailAnswer(kAbout);
  day = row[2];
  month = row[1];
  year = row[0];
}

bool CExtConnectorLocalBase::GetCompositionalFlag() {
  constexpr const char* kAbout = "fluid models";
  const ReservoirQueryStringResult result =
      Client().query_reservoir_as_strings({"FM_FLUID_MODEL", "RES_FLUID_MODEL"});
  const auto model = std::find(result.items.begin(), result.items.end(), "FM_FLUID_MODEL");
  const bool fits = result.items.size() == 2 && result.values.RowCount() == 2 &&
                    result.values[0].size() == 1 && result.values[1].size() == 1 &&
                    model != result.items.end();
  if (!fits) FailAnswer(kAbout);
  return result.values[static_cast<size_t>(model - result.items.begin())].front() ==
         "COMPOSITIONAL";
}

void CExtConnectorLocalBase::GetEOSProperties(EOSProperties& properties) {
  properties = {};
  const std::vector<ReservoirFluidRecord> records = Client().get_res_fluid_models();
  if (records.empty()) return;
  const ReservoirFluidRecord& record = records.front();
  properties.componentCount = static_cast<int32_t>(record.componentNames.size());
  properties.eosName = record.eosName;
  properties.componentNames = record.componentNames;
  for (size_t i = 0; i < record.propertyNames.size(); ++i) {
    StoreProperty(record.propertyNames[i], record.propertyValues[i], *unitConverter, properties);
  }
  properties.binaryInteraction = record.binaryInteraction;
}

}  // namespace gantry
