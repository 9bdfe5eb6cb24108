#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "described_toml/calendar.h"

namespace gantry::fieldrun {

using toml_reader::Date;

struct ChartSeries {
  std::string name;    ///< in the legend
  std::string colour;  ///< class of the report's style: "oil", "water", "gas", ...
  std::vector<std::pair<double, double>> points;
  bool isDashed = false;
};

struct ChartMarker {
  double x = 0;
  double y = 0;
  std::string colour;
  std::string title;  ///< shown when pointed at
};

/// A line chart as an HTML figure with an inline SVG. Colours and fonts come from the report's
/// style sheet.
struct Chart {
  std::string title;
  std::string yUnit;
  std::string xTitle;            ///< below the axis, where it isn't time
  std::optional<Date> dateOfX0;  ///< x counts days from here: the axis shows dates
  bool startsAtZero = true;      ///< the y axis includes 0
  double height = 230;           ///< to a width of 400
  std::vector<ChartSeries> series;
  std::vector<ChartMarker> markers;
};

std::string ToHtml(const Chart& chart);

/// With '&', '<', '>' and quotes as entities.
std::string EscapeHtml(const std::string& text);

/// "950", "12.5k", "3.2M": for axes and headline numbers.
std::string ShortNumber(double value);

}  // namespace gantry::fieldrun
