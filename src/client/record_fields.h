#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "client/connector_records.h"
#include "client/unit_converter.h"

namespace gantry {

// The numbers of a connector's records and their units, in the order in which a remote controller
// sends them (docs/remote-protocol.md).

struct WellDataField {
  double ConnectorWellRecord::*field;
  int32_t code;
};

inline constexpr std::array<WellDataField, 8> kWellDataFields = {{
    {&ConnectorWellRecord::oilRate, kLiquidRate},
    {&ConnectorWellRecord::gasRate, kGasRate},
    {&ConnectorWellRecord::waterRate, kLiquidRate},
    {&ConnectorWellRecord::waterInjectionRate, kLiquidRate},
    {&ConnectorWellRecord::gasInjectionRate, kGasRate},
    {&ConnectorWellRecord::bottomHolePressure, kPressure},
    {&ConnectorWellRecord::tubingHeadPressure, kPressure},
    {&ConnectorWellRecord::uptimeFraction, kNoUnit},
}};

/// A list of a record: one entry for each point of the inflow table. The compositions follow them.
struct InflowField {
  std::vector<double> ConnectorWellRecord::*field;
  int32_t code;
};

inline constexpr std::array<InflowField, 8> kInflowFields = {{
    {&ConnectorWellRecord::iprPressure, kPressure},
    {&ConnectorWellRecord::iprOilRate, kLiquidRate},
    {&ConnectorWellRecord::iprWaterRate, kLiquidRate},
    {&ConnectorWellRecord::iprGasRate, kGasRate},
    {&ConnectorWellRecord::iprTemperature, kTemperature},
    {&ConnectorWellRecord::iprGasDensity, kDensity},
    {&ConnectorWellRecord::iprOilDensity, kDensity},
    {&ConnectorWellRecord::iprWaterDensity, kDensity},
}};

struct EOSField {
  std::vector<double> EOSProperties::*field;
  int32_t code;
  uint32_t bit;
};

inline constexpr std::array<EOSField, 12> kEOSFields = {{
    {&EOSProperties::molecularWeight, kNoUnit, EOSProperties::kMolecularWeight},
    {&EOSProperties::criticalTemperature, kTemperature, EOSProperties::kCriticalTemperature},
    {&EOSProperties::criticalPressure, kPressure, EOSProperties::kCriticalPressure},
    {&EOSProperties::criticalVolume, kCriticalVolume, EOSProperties::kCriticalVolume},
    {&EOSProperties::acentricFactor, kNoUnit, EOSProperties::kAcentricFactor},
    {&EOSProperties::extraProperty, kNoUnit, EOSProperties::kExtraProperty},
    {&EOSProperties::boilingPoint, kTemperature, EOSProperties::kBoilingPoint},
    {&EOSProperties::volumeShift, kNoUnit, EOSProperties::kVolumeShift},
    {&EOSProperties::omegaA, kNoUnit, EOSProperties::kOmegaA},
    {&EOSProperties::omegaB, kNoUnit, EOSProperties::kOmegaB},
    {&EOSProperties::parachor, kNoUnit, EOSProperties::kParachor},
    {&EOSProperties::binaryInteraction, kNoUnit, EOSProperties::kBinaryInteraction},
}};

}  // namespace gantry
