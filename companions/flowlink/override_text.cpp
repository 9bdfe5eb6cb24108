#include "flowlink/override_text.h"

#include <algorithm>
#include <cstdio>

#include "described_toml/calendar.h"

namespace gantry::flowlink {

std::string OverrideText(const WellOrder& order, DeckTime start, const std::string& wells,
                         std::span<const std::string> kept) {
  const auto [year, month, day, hour, minute, second] = toml_reader::DateAfter(start, order.days);
  char date[32];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d", year, month, day);
  std::string text = order.place.Text() + ": " + order.keyword + " of " + date +
                     " gives way to the host's limits for " + wells;
  if (order.isWhole && !kept.empty()) {
    text += "; kept:";
    for (const std::string& limit : kept) text += " " + limit;
  }
  const bool keepsTubing = std::ranges::find(kept, "tubing_head_pressure") != kept.end();
  if (!order.liftTable.empty() && !keepsTubing) {
    text +=
        "; the tubing is the host's, its lift table doesn't count (keep \"tubing_head_pressure\")";
  }
  return text;
}

}  // namespace gantry::flowlink
