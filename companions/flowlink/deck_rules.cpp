#include "flowlink/deck_rules.h"

#include <algorithm>
#include <iterator>

namespace gantry::flowlink {

namespace {

enum class Verdict { kRefused, kGroup, kWarned };

struct Rule {
  std::string_view keyword;
  DeckSection section;
  Verdict verdict;
  std::string_view reason;
};

constexpr std::string_view kGroups =
    "holds groups of wells, which a host may do as well: groups = \"deck\" in the .afi file leaves "
    "them to the deck";
constexpr std::string_view kNetwork =
    "is a surface network, which a host has of its own: groups = \"deck\" in the .afi file leaves "
    "it "
    "to the deck";
constexpr std::string_view kUnits =
    "asks for units that the protocol doesn't have: write the deck in FIELD or METRIC";
constexpr std::string_view kFluid = "asks for another fluid than a black oil: take it out";
constexpr std::string_view kActions =
    "may change wells: on a well that the host has taken over that holds until the host's next "
    "limits";

constexpr Rule kRules[] = {
    {"LAB", DeckSection::kRunspec, Verdict::kRefused, kUnits},
    {"PVT-M", DeckSection::kRunspec, Verdict::kRefused, kUnits},
    {"COMPS", DeckSection::kRunspec, Verdict::kRefused, kFluid},
    {"RESTART", DeckSection::kSolution, Verdict::kRefused,
     "goes on from another run, whose wells the adapter doesn't know: couple the deck from its own "
     "start (START, EQUIL)"},
    {"IMPORT", DeckSection::kGrid, Verdict::kRefused,
     "reads a binary file: convert it to keywords and INCLUDE that"},
    {"GDFILE", DeckSection::kGrid, Verdict::kRefused,
     "reads a binary file: convert it to keywords and INCLUDE that"},
    {"PYACTION", DeckSection::kSchedule, Verdict::kRefused,
     "runs a script of its own in flow, where the adapter's runs: take it out"},
    {"GCONPROD", DeckSection::kSchedule, Verdict::kGroup, kGroups},
    {"GCONINJE", DeckSection::kSchedule, Verdict::kGroup, kGroups},
    {"GCONSALE", DeckSection::kSchedule, Verdict::kGroup, kGroups},
    {"GCONSUMP", DeckSection::kSchedule, Verdict::kGroup, kGroups},
    {"GECON", DeckSection::kSchedule, Verdict::kGroup, kGroups},
    {"GRUPNET", DeckSection::kSchedule, Verdict::kGroup, kNetwork},
    {"BRANPROP", DeckSection::kSchedule, Verdict::kGroup, kNetwork},
    {"NODEPROP", DeckSection::kSchedule, Verdict::kGroup, kNetwork},
    {"ACTIONX", DeckSection::kSchedule, Verdict::kWarned, kActions},
    {"SKIP", DeckSection::kSchedule, Verdict::kWarned,
     "skips nothing in flow 2022.10: what stands up to ENDSKIP counts"},
    {"TUNING", DeckSection::kSchedule, Verdict::kWarned,
     "doesn't count, as in flow alone, unless flow_options has --enable-tuning=true"},
    {"NEXTSTEP", DeckSection::kSchedule, Verdict::kWarned,
     "doesn't count, as in flow alone, unless flow_options has --enable-tuning=true"},
    {"WEFAC", DeckSection::kSchedule, Verdict::kWarned,
     "holds beside the host's limits unless the host sets a downtime; the rates that the host is "
     "told are those while the well is up, so that its own totals are too high"},
    {"WECON", DeckSection::kSchedule, Verdict::kWarned,
     "may shut wells; such a well stays shut, whatever the host says, until the deck opens it"},
};

struct SectionName {
  std::string_view keyword;
  DeckSection section;
};
constexpr SectionName kSections[] = {
    {"RUNSPEC", DeckSection::kRunspec}, {"GRID", DeckSection::kGrid},
    {"EDIT", DeckSection::kGrid},       {"PROPS", DeckSection::kProps},
    {"REGIONS", DeckSection::kProps},   {"SOLUTION", DeckSection::kSolution},
    {"SUMMARY", DeckSection::kSummary}, {"SCHEDULE", DeckSection::kSchedule},
};

}  // namespace

std::string DeckFinding::Text() const {
  // What can't be read tells its place by itself.
  if (place.file.empty()) return text;
  return place.Text() + (isRefusal ? ": " : ": warning: ") + text;
}

DeckSection SectionAt(const DeckKeyword& keyword, DeckSection present) {
  const auto found = std::ranges::find(kSections, keyword.name, &SectionName::keyword);
  return found != std::end(kSections) ? found->section : present;
}

std::vector<DeckFinding> Judge(const DeckKeyword& keyword, DeckSection section,
                               const DeckRules& rules) {
  std::vector<DeckFinding> findings;
  for (const Rule& rule : kRules) {
    if (rule.keyword != keyword.name || rule.section != section) continue;
    if (rule.verdict == Verdict::kGroup && rules.leavesGroupsToDeck) continue;
    const bool isRefusal = rule.verdict != Verdict::kWarned;
    findings.push_back({keyword.place, keyword.name + " " + std::string(rule.reason), isRefusal});
  }
  return findings;
}

}  // namespace gantry::flowlink
