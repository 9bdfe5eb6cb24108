#include "model/fluid_record.h"

#include <algorithm>
#include <cstring>

namespace gantry {
namespace {

using Column = double (FluidModelRecord::*)[kMaxComponents];

/// The arrays of the record, each with its sequence and the bit by which the mask names it. The
/// reserved column has no sequence.
struct FluidColumn {
  Column column;
  std::vector<double> EOSProperties::*values;
  uint32_t bit;
};

using Eos = EOSProperties;
using Record = FluidModelRecord;
constexpr FluidColumn kColumns[] = {
    {&Record::criticalTemperature, &Eos::criticalTemperature, Eos::kCriticalTemperature},
    {&Record::criticalPressure, &Eos::criticalPressure, Eos::kCriticalPressure},
    {&Record::criticalVolume, &Eos::criticalVolume, Eos::kCriticalVolume},
    {&Record::acentricFactor, &Eos::acentricFactor, Eos::kAcentricFactor},
    {&Record::molecularWeight, &Eos::molecularWeight, Eos::kMolecularWeight},
    {&Record::boilingPoint, &Eos::boilingPoint, Eos::kBoilingPoint},
    {&Record::volumeShift, &Eos::volumeShift, Eos::kVolumeShift},
    {&Record::omegaA, &Eos::omegaA, Eos::kOmegaA},
    {&Record::omegaB, &Eos::omegaB, Eos::kOmegaB},
    {&Record::parachor, &Eos::parachor, Eos::kParachor},
};

void FillNames(const EOSProperties& fluid, size_t count, FluidModelRecord& record) {
  const size_t names = std::min(count, fluid.componentNames.size());
  for (size_t i = 0; i < names; ++i) {
    const std::string& name = fluid.componentNames[i];
    std::memcpy(record.names[i], name.data(), std::min(name.size(), sizeof record.names[i]));
  }
}

void FillColumns(const EOSProperties& fluid, size_t count, FluidModelRecord& record) {
  for (const FluidColumn& column : kColumns) {
    const std::vector<double>& values = fluid.*column.values;
    if (values.empty()) continue;
    record.mask |= column.bit;
    std::copy_n(values.begin(), std::min(count, values.size()), record.*column.column);
  }
}

/// The simulator lists the lower triangle row by row; what is missing at its end stays 0.
void FillBinaryInteraction(const std::vector<double>& triangle, size_t count,
                           FluidModelRecord& record) {
  size_t next = 0;
  for (size_t row = 1; row < count; ++row) {
    for (size_t column = 0; column < row && next < triangle.size(); ++column) {
      record.binaryInteraction[row][column] = triangle[next++];
    }
  }
}

int32_t EquationOfStateCode(const std::string& name) {
  if (name == "PENG_ROBINSON") return EXT_PENG_ROBINSON;
  return name == "SOAVE_REDLICH_KWONG" ? EXT_SOAVE_REDLICH_KWONG : EXT_OTHER_EQUATION;
}

}  // namespace

std::unique_ptr<const FluidModelRecord> MakeFluidRecord(const EOSProperties& fluid) {
  if (fluid.componentCount < 1 || fluid.componentCount > static_cast<int32_t>(kMaxComponents)) {
    return nullptr;
  }
  auto record = std::make_unique<FluidModelRecord>();
  const auto count = static_cast<size_t>(fluid.componentCount);
  record->componentCount = fluid.componentCount;
  FillNames(fluid, count, *record);
  FillColumns(fluid, count, *record);
  FillBinaryInteraction(fluid.binaryInteraction, count, *record);
  record->equationOfState = EquationOfStateCode(fluid.eosName);
  return record;
}

void CopyFluidRecord(const FluidModelRecord& from, FluidModelRecord& to) {
  to.componentCount = from.componentCount;
  std::memcpy(to.names, from.names, sizeof to.names);
  to.mask = from.mask;
  constexpr size_t first = offsetof(FluidModelRecord, criticalTemperature);
  constexpr size_t last = offsetof(FluidModelRecord, binaryInteraction);
  std::memcpy(reinterpret_cast<char*>(&to) + first, reinterpret_cast<const char*>(&from) + first,
              last - first);
  // Nine tenths of the record, and nearly all of it zero: to clear it takes half of a copy's time.
  const size_t used = static_cast<size_t>(from.componentCount) * sizeof to.binaryInteraction[0];
  std::memcpy(to.binaryInteraction, from.binaryInteraction, used);
  std::memset(reinterpret_cast<char*>(to.binaryInteraction) + used, 0,
              sizeof to.binaryInteraction - used);
  to.equationOfState = from.equationOfState;
}

}  // namespace gantry
