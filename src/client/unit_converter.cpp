#include "client/unit_converter.h"

namespace gantry {

const std::array<UnitFamily, kUnitFamilyCount> UnitFamilyTable = {{
    {"Liquid rate", 60052, {0, 0.158987}, {0, 1}},
    {"Gas rate", 60053, {0, 28174}, {0, 1000}},
    {"Liquid volume", 60061, {0, 158987}, {0, 1000000}},
    {"Gas volume", 60059, {0, 28174}, {0, 1000}},
    {"Reservoir rate", 60062, {0, 0.158987}, {0, 1}},
    {"Reservoir volume", 60063, {0, 158987}, {0, 1000000}},
    {"Pressure", 60054, {14.696, 0.0689476}, {14.696, 1}},
    {"Pressure difference", 60058, {0, 0.0689476}, {0, 1}},
    {"Temperature", 60056, {-32, 0.555555}, {0, 1}},
    {"Density", 60055, {0, 16.0185}, {0, 1}},
    {"Critical volume", 60057, {0, 0.06243}, {0, 1}},
    {"GOR", 60060, {0, 0.17809}, {0, 0.001}},
    {"Mole rate", 60064, {0, 0.45359}, {0, 1}},
}};

namespace {

constexpr uint32_t kNoUnitUserCode = 60051;

const UnitFamily* FamilyOf(int32_t code) {
  if (code < 0 || code >= kUnitFamilyCount) return nullptr;
  return &UnitFamilyTable[static_cast<size_t>(code)];
}

}  // namespace

const char* UnitFamilyName(int32_t code) {
  const UnitFamily* family = FamilyOf(code);
  return family == nullptr ? "None" : family->name;
}

uint32_t UnitFamilyUserCode(int32_t code) {
  const UnitFamily* family = FamilyOf(code);
  return family == nullptr ? kNoUnitUserCode : family->userCode;
}

const UnitScale* UnitConverter::ScaleOf(int32_t code) const {
  const UnitFamily* family = FamilyOf(code);
  if (family == nullptr) return nullptr;
  return isMetric_ ? &family->metric : &family->field;
}

double UnitConverter::FromSimulator(double value, int32_t code) const {
  FromSimulator(std::span(&value, 1), code);
  return value;
}

double UnitConverter::ToSimulator(double value, int32_t code) const {
  ToSimulator(std::span(&value, 1), code);
  return value;
}

void UnitConverter::FromSimulator(std::span<double> values, int32_t code) const {
  const UnitScale* scale = ScaleOf(code);
  if (scale == nullptr) return;
  for (double& value : values) value = gantry::FromSimulator(value, *scale);
}

void UnitConverter::ToSimulator(std::span<double> values, int32_t code) const {
  const UnitScale* scale = ScaleOf(code);
  if (scale == nullptr) return;
  for (double& value : values) value = gantry::ToSimulator(value, *scale);
}

}  // namespace gantry
