#pragma once

#include <array>
#include <chrono>
#include <string>
#include <vector>

#include "flowlink/link_settings.h"

namespace gantry::flowlink {

using DeckTime = std::chrono::sys_seconds;

/// Reads "1", "JAN", "2015" and perhaps "12:30:00". Throws `LinkFault` when this is no date.
DeckTime ReadDeckDate(const std::vector<std::string>& record);

/// The record of a DATES keyword without its end.
std::string WriteDeckDate(DeckTime time);

/// Year, month, day, hour, minute, second.
std::array<int32_t, 6> DateOf(DeckTime time);

/// Days from the start of the points of a grid, up to and without the end.
std::vector<double> GridTimes(const ReportGrid& grid, DeckTime start, double endDays);

}  // namespace gantry::flowlink
