#include "fieldrun/results/svg_chart.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

constexpr double kWidth = 400;
constexpr double kLeft = 52;
constexpr double kRight = 26;  // half of the last label stands beyond the axis
constexpr double kTop = 10;
constexpr double kBottom = 24;       // the labels of the x axis
constexpr double kTitleRoom = 16;    // the title below them, where there is one
constexpr size_t kMostPoints = 500;  // a curve can't show more than the chart has pixels

struct Tick {
  double value;
  std::string label;
};

struct Axis {
  double low = 0;
  double high = 1;
  std::vector<Tick> ticks;

  double Part(double value) const { return (value - low) / (high - low); }
};

double NiceStep(double span, int most) {
  const double raw = span / most;
  const double power = std::pow(10, std::floor(std::log10(raw)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= raw) return factor * power;
  }
  return 10 * power;
}

// An axis over a range, widened to round numbers.
Axis NumberAxis(double low, double high, bool isWidened) {
  constexpr double kFlat = 5e-3;  // of the values: the labels' digits couldn't tell less apart
  const double size = std::max(std::abs(low), std::abs(high));
  const bool isFlat = high - low <= kFlat * size;
  if (isFlat && size == 0) high = 1;
  if (isFlat && size > 0) low -= 0.1 * size, high += 0.1 * size;
  const double step = NiceStep(high - low, 5);
  Axis axis{low, high, {}};
  if (isWidened) axis.low = std::floor(low / step + 1e-9) * step;
  // A curve along the upper edge would be lost there.
  if (isWidened) axis.high = std::ceil(high / step + (isFlat ? -1e-9 : 0.02)) * step;
  const double first = std::ceil(axis.low / step - 1e-9);
  for (double i = first; i * step <= axis.high + 1e-9 * step; ++i) {
    axis.ticks.push_back({i * step, ShortNumber(std::abs(i) < 0.5 ? 0 : i * step)});
  }
  return axis;
}

// Ticks on the first days of months, as far apart as it takes for eight at most.
Axis DateAxis(const Date& start, double low, double high) {
  constexpr std::array kMonths{1, 2, 3, 6, 12, 24, 60, 120, 240, 600};
  constexpr double kDaysPerMonth = 30.44;
  const double months = (high - low) / kDaysPerMonth;
  if (months < 2) return NumberAxis(low, high, false);
  const auto fits =
      std::find_if(kMonths.begin(), kMonths.end(), [&](int step) { return months / step <= 7; });
  const int step = fits == kMonths.end() ? kMonths.back() : *fits;
  Axis axis{low, high, {}};
  Date date{start.year, 1, 1};
  if (step > 12) date.year -= date.year % (step / 12);
  for (; DayNumber(date) - DayNumber(start) <= high; date = AddMonths(date, step)) {
    const double day = DayNumber(date) - DayNumber(start);
    if (day < low) continue;
    axis.ticks.push_back({day, step >= 12 ? fmt::format("{}", date.year)
                                          : fmt::format("{}-{:02}", date.year, date.month)});
  }
  return axis;
}

struct Range {
  double low = 1e300;
  double high = -1e300;

  void Add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

class Drawing {
 public:
  explicit Drawing(const Chart& chart) : chart_(chart) {
    Range xs;
    Range ys;
    for (const ChartSeries& series : chart.series) {
      for (const auto& [x, y] : series.points) xs.Add(x), ys.Add(y);
    }
    for (const ChartMarker& marker : chart.markers) xs.Add(marker.x), ys.Add(marker.y);
    if (chart.startsAtZero || ys.low > ys.high) ys.Add(0);
    xs.Add(0);
    x_ = chart.dateOfX0 ? DateAxis(*chart.dateOfX0, xs.low, xs.high)
                        : NumberAxis(xs.low, xs.high, true);
    y_ = NumberAxis(ys.low, ys.high, true);
    xTitle_ = chart.dateOfX0 && x_.high - x_.low < 60 ? "days" : chart.xTitle;
    base_ = chart.height - kBottom - (xTitle_.empty() ? 0 : kTitleRoom);
  }

  std::string Svg() const {
    std::string svg = fmt::format("<svg viewBox=\"0 0 {} {}\" role=\"img\" aria-label=\"{}\">\n",
                                  kWidth, chart_.height, EscapeHtml(chart_.title));
    svg += Grid();
    for (const ChartSeries& series : chart_.series) svg += Line(series);
    for (const ChartMarker& marker : chart_.markers) {
      svg += fmt::format(
          "<circle class=\"mark {}\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"5\"><title>{}</title>"
          "</circle>\n",
          marker.colour, X(marker.x), Y(marker.y), EscapeHtml(marker.title));
    }
    return svg + "</svg>\n";
  }

 private:
  double X(double value) const { return kLeft + x_.Part(value) * (kWidth - kLeft - kRight); }
  double Y(double value) const { return base_ - y_.Part(value) * (base_ - kTop); }

  std::string Grid() const {
    std::string svg;
    for (const Tick& tick : y_.ticks) {
      const double y = Y(tick.value);
      svg += fmt::format(
          "<line class=\"grid\" x1=\"{}\" x2=\"{}\" y1=\"{:.1f}\" y2=\"{:.1f}\"/>"
          "<text class=\"y\" x=\"{}\" y=\"{:.1f}\">{}</text>\n",
          kLeft, kWidth - kRight, y, y, kLeft - 7, y + 4, tick.label);
    }
    for (const Tick& tick : x_.ticks) {
      const double x = X(tick.value);
      svg += fmt::format(
          "<line class=\"tick\" x1=\"{:.1f}\" x2=\"{:.1f}\" y1=\"{}\" y2=\"{}\"/>"
          "<text class=\"x\" x=\"{:.1f}\" y=\"{}\">{}</text>\n",
          x, x, base_, base_ + 4, x, base_ + 17, tick.label);
    }
    svg += fmt::format("<line class=\"axis\" x1=\"{}\" x2=\"{}\" y1=\"{}\" y2=\"{}\"/>\n", kLeft,
                       kWidth - kRight, base_, base_);
    if (xTitle_.empty()) return svg;
    return svg + fmt::format("<text class=\"title\" x=\"{}\" y=\"{}\">{}</text>\n", kWidth - kRight,
                             chart_.height - 4, EscapeHtml(xTitle_));
  }

  std::string Line(const ChartSeries& series) const {
    if (series.points.empty()) return "";
    const size_t stride = series.points.size() / kMostPoints + 1;
    std::string path;
    for (size_t i = 0; i < series.points.size(); ++i) {
      if (i % stride != 0 && i + 1 != series.points.size()) continue;
      path += fmt::format("{}{:.1f} {:.1f}", path.empty() ? "M" : "L", X(series.points[i].first),
                          Y(series.points[i].second));
    }
    return fmt::format("<path class=\"line {}{}\" d=\"{}\"/>\n", series.colour,
                       series.isDashed ? " dashed" : "", path);
  }

  const Chart& chart_;
  Axis x_;
  Axis y_;
  std::string xTitle_;
  double base_ = 0;  ///< where the x axis lies
};

}  // namespace

std::string EscapeHtml(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string ShortNumber(double value) {
  const double size = std::abs(value);
  if (size >= 1e9) return fmt::format("{:.4g}G", value / 1e9);
  if (size >= 1e6) return fmt::format("{:.4g}M", value / 1e6);
  if (size >= 1e4) return fmt::format("{:.4g}k", value / 1e3);
  return fmt::format("{:.4g}", value);
}

std::string ToHtml(const Chart& chart) {
  std::string html = fmt::format("<figure><figcaption>{}<span>{}</span></figcaption>\n",
                                 EscapeHtml(chart.title), EscapeHtml(chart.yUnit));
  if (chart.series.size() > 1) {
    html += "<ul class=\"legend\">";
    for (const ChartSeries& series : chart.series) {
      html += fmt::format("<li class=\"{}{}\">{}</li>", series.colour,
                          series.isDashed ? " dashed" : "", EscapeHtml(series.name));
    }
    html += "</ul>\n";
  }
  return html + Drawing(chart).Svg() + "</figure>\n";
}

}  // namespace gantry::fieldrun
