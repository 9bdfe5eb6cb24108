#pragma once

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

/// The deck's times, of which the first is the start, with those of a grid and the host's days
/// among them, in days from the start. Of two times closer than `Closeness` only the deck's is
/// kept: the calendar and a deck's own count of days drift apart at leap days.
std::vector<double> MergeTimes(const ReportGrid& grid, DeckTime start,
                               const std::vector<double>& ofDeck);

/// How far apart two times may lie and be meant as the same: a tenth of the grid's step, or of
/// `step` where the deck's own times are the grid.
double Closeness(const ReportGrid& grid, double step);

/// The position of the stop that a run until that day is meant for: the closest one where that is
/// as good as the day, otherwise the first one behind it, or the last. The stops are in order, and
/// there is one.
size_t StopFor(const ReportGrid& grid, const std::vector<double>& stops, double days);

}  // namespace gantry::flowlink
