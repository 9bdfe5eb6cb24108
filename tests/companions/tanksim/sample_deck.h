#pragma once

#include <string>

#include <fmt/format.h>

#include "tanksim/deck_reader.h"

namespace gantry::simulator::test {

/// A black-oil deck of one tank with a producer (P), a water injector (W) and a gas injector (G),
/// the same reservoir in either unit system. `tank` is added to the tank's keys.
inline std::string SampleDeckText(bool isMetric = false, const std::string& tank = "") {
  using toml_reader::Quantity;
  const UnitSystem units = isMetric ? UnitSystem::kMetric : UnitSystem::kField;
  const auto n = [&](double value, Quantity quantity) {
    return fmt::format("{:.15g}", FromField(value, quantity, units) + 0.0);
  };
  const auto real = [&](double value, Quantity quantity) {
    std::string text = n(value, quantity);
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
  };
  const auto pressure = [&](double value) { return real(value, Quantity::kPressure); };
  std::string oil;
  const double table[][4] = {{100, 0.02, 1.05, 2.0},
                             {1000, 0.20, 1.15, 1.4},
                             {2000, 0.45, 1.27, 1.0},
                             {3000, 0.72, 1.40, 0.8}};
  for (const auto& row : table) {
    oil += fmt::format("[{}, {}, {}, {}],", pressure(row[0]), real(row[1], Quantity::kGasPerLiquid),
                       row[2], row[3]);
  }
  std::string gas;
  const double gasTable[][3] = {{100, 30.0, 0.012},
                                {1000, 2.9, 0.014},
                                {2000, 1.4, 0.018},
                                {3000, 0.95, 0.022},
                                {5000, 0.65, 0.03}};
  for (const auto& row : gasTable) {
    gas += fmt::format("[{}, {}, {}],", pressure(row[0]), real(row[1], Quantity::kGasVolumeFactor),
                       row[2]);
  }
  std::string text = fmt::format("units = \"{}\"\nstart_date = 2020-01-31\nend_time = 400.0\n",
                                 isMetric ? "metric" : "field");
  text += fmt::format(
      "[fluid]\noil_density = {}\ngas_density = {}\noil_compressibility = {}\n"
      "oil = [{}]\ngas = [{}]\n[fluid.water]\nreference_pressure = {}\ncompressibility = {}\n",
      real(52.0, Quantity::kDensity), real(0.06, Quantity::kDensity),
      real(1.2e-5, Quantity::kInversePressure), oil, gas, pressure(3000),
      real(3e-6, Quantity::kInversePressure));
  text +=
      "[rock_fluid]\n"
      "water_oil = [[0.2, 0.0, 0.9], [0.4, 0.06, 0.4], [0.6, 0.2, 0.1], [0.75, 0.35, 0.0]]\n"
      "gas_oil = [[0.0, 0.0, 0.9], [0.05, 0.0, 0.7], [0.2, 0.08, 0.3], [0.5, 0.5, 0.0]]\n";
  text += fmt::format(
      "[[tank]]\nname = \"T\"\npressure = {}\ntemperature = {}\npore_volume = {}\n"
      "water_saturation = 0.3\ndissolved_gas = {}\nrock_compressibility = {}\n{}\n",
      pressure(3200), real(180, Quantity::kSimulatorTemperature),
      real(4e7, Quantity::kReservoirVolume), real(0.6, Quantity::kGasPerLiquid),
      real(4e-6, Quantity::kInversePressure), tank);
  text += fmt::format(
      "[[well]]\nname = \"P\"\ntank = \"T\"\ntype = \"producer\"\nproductivity_index = {}\n"
      "minimum_bottom_hole_pressure = {}\ndepth = {}\ntubing_diameter = {}\n",
      real(4.0, Quantity::kLiquidPerPressure), pressure(500), real(7000, Quantity::kLength),
      real(0.3, Quantity::kLength));
  text += fmt::format(
      "[[well]]\nname = \"W\"\ntank = \"T\"\ntype = \"water_injector\"\ninjectivity_index = {}\n"
      "maximum_bottom_hole_pressure = {}\n",
      real(6.0, Quantity::kLiquidPerPressure), pressure(5000));
  text += fmt::format(
      "[[well]]\nname = \"G\"\ntank = \"T\"\ntype = \"gas_injector\"\ninjectivity_index = {}\n"
      "maximum_bottom_hole_pressure = {}\n",
      real(9.0, Quantity::kGasPerPressure), pressure(5000));
  return text;
}

inline Deck SampleDeck(bool isMetric = false, const std::string& tank = "") {
  return ReadDeckText(SampleDeckText(isMetric, tank), "sample.afi");
}

}  // namespace gantry::simulator::test
