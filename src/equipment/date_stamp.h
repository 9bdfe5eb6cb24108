#pragma once

#include <string>

namespace gantry {

/// Times as days since 31 December 1899, with the time of day as the fraction.

/// The present time, UTC.
double PresentTime();

/// The time as a stamp, such as "2026-03-01T12:00:00.000Z": whole seconds, a tenth of a second
/// forgiven. Empty for a time outside the years 1 to 9999.
std::string FormatDateStamp(double days);

/// The time of a stamp, 3.4e35 for a text that is none.
double ReadDateStamp(std::string stamp);

}  // namespace gantry
