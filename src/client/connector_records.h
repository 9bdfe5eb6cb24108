#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/query_results.h"

namespace gantry {

/// One well as a connector hands it to the model, in the driver's units: stock-tank barrels a day,
/// millions of standard cubic feet a day, psig, degrees Fahrenheit, pounds per cubic foot.
struct ConnectorWellRecord {
  std::string name;
  std::string status;
  double oilRate = 0.0;
  double gasRate = 0.0;
  double waterRate = 0.0;
  double waterInjectionRate = 0.0;
  double gasInjectionRate = 0.0;
  double bottomHolePressure = 0.0;
  double tubingHeadPressure = 0.0;
  double uptimeFraction = 0.0;
  /// The inflow table: one entry for each point, matched by position.
  std::vector<double> iprPressure;
  std::vector<double> iprOilRate;
  std::vector<double> iprWaterRate;
  std::vector<double> iprGasRate;
  std::vector<double> iprTemperature;
  std::vector<double> iprGasDensity;
  std::vector<double> iprOilDensity;
  std::vector<double> iprWaterDensity;
  /// Mole fractions, a row for each point; no rows without components.
  RowTable<double> iprComposition;
};

/// A well's words as the simulator spells them.
struct ConnectorWellStatus {
  std::string name;
  std::string type;
  std::string status;
};

/// The equation-of-state data of a compositional model. `presentProperties` tells what was filled.
struct EOSProperties {
  enum : uint32_t {
    kCriticalTemperature = 1,
    kCriticalPressure = 2,
    kCriticalVolume = 4,
    kAcentricFactor = 8,
    kMolecularWeight = 16,
    kExtraProperty = 32,
    kBoilingPoint = 64,
    kVolumeShift = 128,
    kOmegaA = 256,
    kOmegaB = 512,
    kParachor = 1024,
    kBinaryInteraction = 2048,
  };

  std::string eosName;
  std::vector<std::string> componentNames;
  std::vector<double> molecularWeight;
  std::vector<double> criticalTemperature;
  std::vector<double> criticalPressure;
  std::vector<double> criticalVolume;
  std::vector<double> acentricFactor;
  std::vector<double> extraProperty;
  std::vector<double> boilingPoint;
  std::vector<double> volumeShift;
  std::vector<double> omegaA;
  std::vector<double> omegaB;
  std::vector<double> parachor;
  std::vector<bool> componentMarks;
  std::vector<double> binaryInteraction;  ///< the lower triangle, row by row
  uint32_t presentProperties = 0;
  int32_t componentCount = 0;
};

}  // namespace gantry
