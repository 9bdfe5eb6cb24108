#include "fieldrun/results/report_html.h"

namespace gantry::fieldrun {

// Oil green, gas red, water blue, as in every field office; told apart by lightness as well.
const char* const kReportStyle = R"(
:root { --ink: #1c2430; --soft: #5d6875; --line: #d9dee4; --page: #f4f6f8; --card: #ffffff;
  --oil: #14804a; --gas: #cf3f3f; --water: #2a6fc9; --inj: #6b4bb0; --pressure: #8a6d1f;
  --first: #9aa5b1; --last: #2a3a4d; --lift: #d9822b; }
@media screen and (prefers-color-scheme: dark) { :root { --ink: #e6eaef; --soft: #9aa5b3; --line: #343d49;
  --page: #14181e; --card: #1c2229; --oil: #45c486; --gas: #f07878; --water: #6aa8f7;
  --inj: #b39af0; --pressure: #d9b75c; --first: #6f7c8b; --last: #dfe6ee; --lift: #f0a35a; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink);
  font: 15px/1.45 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
main { max-width: 1180px; margin: 0 auto; padding: 32px 20px 60px; }
h1 { font-size: 28px; margin: 0 0 4px; letter-spacing: -0.01em; }
h2 { font-size: 19px; margin: 40px 0 12px; }
h3 { font-size: 16px; margin: 0; }
p { margin: 4px 0; }
.soft, figcaption span, .tile span { color: var(--soft); }
.failure { border-left: 4px solid var(--gas); background: var(--card); padding: 10px 14px;
  margin: 16px 0 0; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(150px, 1fr)); gap: 12px;
  margin-top: 22px; }
.tile, figure, .well { background: var(--card); border: 1px solid var(--line);
  border-radius: 8px; }
.tile { padding: 12px 14px; }
.tile b { display: block; font-size: 23px; font-variant-numeric: tabular-nums; }
.tile span { font-size: 13px; }
.charts { display: grid; grid-template-columns: repeat(auto-fit, minmax(330px, 1fr)); gap: 14px; }
figure { margin: 0; padding: 12px 12px 6px; }
figcaption { font-weight: 600; font-size: 14px; }
figcaption span { font-weight: 400; margin-left: 8px; font-size: 13px; }
svg { display: block; width: 100%; height: auto; margin-top: 4px; }
svg text { fill: var(--soft); font-size: 11.5px; font-variant-numeric: tabular-nums; }
text.y, text.title { text-anchor: end; }
text.x { text-anchor: middle; }
.grid { stroke: var(--line); }
.axis, .tick { stroke: var(--soft); }
.line { fill: none; stroke-width: 2.2; stroke-linejoin: round; stroke-linecap: round; }
.line.dashed { stroke-dasharray: 6 5; }
.mark { stroke: var(--card); stroke-width: 1.5; }
.line.oil { stroke: var(--oil); } .line.gas { stroke: var(--gas); }
.line.water { stroke: var(--water); } .line.inj { stroke: var(--inj); }
.line.pressure { stroke: var(--pressure); } .line.first { stroke: var(--first); }
.line.last { stroke: var(--last); } .line.lift { stroke: var(--lift); }
.mark.first { fill: var(--first); } .mark.last { fill: var(--last); }
.legend { list-style: none; display: flex; flex-wrap: wrap; gap: 2px 14px; margin: 4px 0 0;
  padding: 0; font-size: 12.5px; color: var(--soft); }
.legend li::before { content: ""; display: inline-block; width: 18px; margin-right: 6px;
  vertical-align: middle; border-top: 3px solid currentColor; }
.legend li.dashed::before { border-top-style: dashed; }
.legend .oil::before { color: var(--oil); } .legend .gas::before { color: var(--gas); }
.legend .water::before { color: var(--water); } .legend .inj::before { color: var(--inj); }
.legend .first::before { color: var(--first); } .legend .last::before { color: var(--last); }
.legend .lift::before { color: var(--lift); }
.legend .pressure::before { color: var(--pressure); }
.well { padding: 14px; margin-top: 14px; }
.well figure { border: 0; padding: 6px 0 0; }
@media print, (min-width: 1000px) { .producer figure:first-child { grid-row: span 2; } }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; background: var(--card); font-size: 14px;
  font-variant-numeric: tabular-nums; }
th, td { text-align: right; padding: 6px 10px; border-bottom: 1px solid var(--line);
  white-space: nowrap; }
th { color: var(--soft); font-weight: 600; }
th:first-child, td:first-child, .left { text-align: left; }
.failure ul { margin: 4px 0 0; padding-left: 20px; }
@media print {
  @page { margin: 12mm; }
  body { background: none; font-size: 11px; }
  main { max-width: none; padding: 0; }
  h1 { font-size: 20px; }
  h2 { font-size: 14px; margin: 14px 0 6px; break-after: avoid; }
  h3 { font-size: 12px; }
  .tiles { grid-template-columns: repeat(4, 1fr); gap: 6px; margin-top: 10px; }
  .tile { padding: 5px 8px; }
  .tile b { font-size: 15px; }
  .tile span, figcaption, figcaption span, .legend { font-size: 9px; }
  .charts { grid-template-columns: repeat(3, 1fr); gap: 6px; }
  .charts, .tiles, .well, figure, tr { break-inside: avoid; }
  figure { padding: 4px; }
  .well { padding: 6px 8px; margin-top: 8px; }
  .wide { overflow: visible; }
  table { font-size: 9px; }
  th, td { padding: 2px 5px; white-space: normal; }
}
)";

}  // namespace gantry::fieldrun
