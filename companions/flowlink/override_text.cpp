#include "flowlink/override_text.h"

#include <algorithm>

#include "described_toml/calendar.h"

namespace gantry::flowlink {

std::string OverrideText(const WellOrder& order, DeckTime start, const std::string& wells,
                         std::span<const std::string> kept) {
  const auto date = toml_reader::DateAfter(start, order.days);
  std::string text = order.place.Text() + ": " + order.keyword + " of " +
                     toml_reader::ToText({date[0], date[1], date[2]}) +
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
