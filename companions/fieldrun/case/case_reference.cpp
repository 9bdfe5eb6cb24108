#include <string>
#include <utility>

#include <fmt/format.h>

#include "described_toml/key_reference.h"
#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {
namespace {

/// Names of keys, over as many lines as they need.
template <class Spec>
std::string Names(KeyTable<Spec> keys) {
  constexpr size_t kWidth = 90;
  std::string lines;
  std::string line = "   ";
  for (const KeyRow<Spec>& row : keys) {
    if (line.size() + row.about.name.size() > kWidth) lines += std::exchange(line, "   ") + "\n";
    line += fmt::format(" {}", row.about.name);
  }
  return lines + line + "\n";
}

std::string ChangeLines() {
  return "  and new values: of a group\n" + Names(ChangesOfGroups()) +
         "  of wells, or those of a group\n" + Names(ChangesOfWells()) +
         "  of the field\n    manifold_pressure\n";
}

}  // namespace

std::string CaseReference() {
  std::string text;
  ForEachSection([&text](const auto& section) {
    const std::string heading =
        section.kIsList ? fmt::format("[[{}]]", section.name) : fmt::format("[{}]", section.name);
    text += fmt::format("{}{}  {}\n{}", text.empty() ? "" : "\n", heading, section.meaning,
                        toml_reader::KeyLines(section.keys));
    if constexpr (std::is_same_v<decltype(section.keys), KeyTable<EventSpec>>)
      text += ChangeLines();
  });
  return text;
}

}  // namespace gantry::fieldrun
