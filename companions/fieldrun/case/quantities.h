#pragma once

#include <string>
#include <string_view>

#include "described_toml/quantity.h"

namespace gantry::fieldrun {

// Everything inside fieldrun, and everything at the module's boundary, is in field units: STB/d,
// MMscf/d, psig, feet, inches, degrees Fahrenheit, scf/STB. Only what is read from a case and what
// is written for the user is in the units of the case.
using toml_reader::kAtmosphere;
using toml_reader::Quantity;
using toml_reader::UnitSystem;

/// "1 well", "5 wells".
std::string Counted(size_t count, std::string_view noun);

}  // namespace gantry::fieldrun
