#pragma once

#include <array>
#include <cstdint>
#include <string_view>
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
  std::string_view property;  ///< as a simulator calls it; empty for what isn't told as one
};

inline constexpr std::array<EOSField, 12> kEOSFields = {{
    {&EOSProperties::molecularWeight, kNoUnit, EOSProperties::kMolecularWeight, "Molecular weight"},
    {&EOSProperties::criticalTemperature, kTemperature, EOSProperties::kCriticalTemperature,
     "TCrit"},
    {&EOSProperties::criticalPressure, kPressure, EOSProperties::kCriticalPressure, "PCrit"},
    {&EOSProperties::criticalVolume, kCriticalVolume, EOSProperties::kCriticalVolume, "VCRIT"},
    {&EOSProperties::acentricFactor, kNoUnit, EOSProperties::kAcentricFactor, "Acentric factor"},
    {&EOSProperties::extraProperty, kNoUnit, EOSProperties::kExtraProperty, ""},
    {&EOSProperties::boilingPoint, kTemperature, EOSProperties::kBoilingPoint, "BP"},
    {&EOSProperties::volumeShift, kNoUnit, EOSProperties::kVolumeShift, "VSHIFT"},
    {&EOSProperties::omegaA, kNoUnit, EOSProperties::kOmegaA, "OMEGAA"},
    {&EOSProperties::omegaB, kNoUnit, EOSProperties::kOmegaB, "OMEGAB"},
    {&EOSProperties::parachor, kNoUnit, EOSProperties::kParachor, "Parachor"},
    {&EOSProperties::binaryInteraction, kNoUnit, EOSProperties::kBinaryInteraction, ""},
}};

}  // namespace gantry
