#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "described_toml/quantity.h"
#include "tanksim/black_oil.h"
#include "tanksim/compositional_fluid.h"
#include "tanksim/rock_fluid.h"
#include "tanksim/well_words.h"

namespace gantry::simulator {

using toml_reader::UnitSystem;

/// Water around a tank that follows its pressure (Fetkovich, Journal of Petroleum Technology, July
/// 1971). Field units.
struct AquiferData {
  double volume = 0.0;             ///< rb of water
  double compressibility = 6e-6;   ///< of water and rock together, 1/psi
  double productivityIndex = 0.0;  ///< rb/d/psi
};

struct TankData {
  std::string name;
  InitialState initial;
  double rockCompressibility = 0.0;  ///< 1/psi
  double rockReferencePressure = 0.0;
  bool hasFront = false;  ///< injected fluids push a front; else they mix
  double gasSweep = 1.0;  ///< share of the volume swept when a front breaks through
  double waterSweep = 1.0;
  std::optional<AquiferData> aquifer;
};

struct WellData {
  std::string name;
  int line = 0;  ///< in the deck
  size_t tank = 0;
  WellType type = WellType::kProducer;
  WellStatus status = WellStatus::kOpen;
  double uptime = 1.0;
  double index = 0.0;         ///< stb/d/psi of oil or water; Mscf/d/psi of gas
  bool indexIsOfGas = false;  ///< for a producer: of a gas well
  double skin = 0.0;
  double depth = 0.0;           ///< ft
  double tubingDiameter = 0.0;  ///< ft
  double injectionTemperature = 60.0;
  std::vector<double> injectedComposition;
  std::vector<WellLimit> limits;
};

/// A run as its deck describes it, in field units but for what `units` says about the outside.
struct Deck {
  std::string file;
  std::string checksum;  ///< of its text
  std::string title;
  UnitSystem units = UnitSystem::kField;
  std::chrono::sys_days start;
  std::optional<double> endTime;  ///< days
  std::string reportedVersion;
  std::optional<CompositionalData> compositional;  ///< when not, the fluid is the black oil
  BlackOilData blackOil;
  RockFluidData rockFluid;
  std::vector<TankData> tanks;
  std::vector<WellData> wells;
};

}  // namespace gantry::simulator
