#include "flowlink/link_settings.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>

#include "described_toml/described_table.h"
#include "described_toml/key_reference.h"
#include "flowlink/link_fault.h"
#include "platform/environment.h"

namespace gantry::flowlink {

namespace {

using toml_reader::DescribedTable;
using toml_reader::Key;
using toml_reader::KeyRow;

constexpr std::array<std::string_view, 7> kLimits = {
    "bottom_hole_pressure", "oil_rate",       "water_rate",          "gas_rate",
    "liquid_rate",          "reservoir_rate", "tubing_head_pressure"};

/// What the file says in words, before it means something.
struct Words {
  std::string deck;
  int groups = 1;
  int shutWells = 0;
  int rungs = 0;
};

constexpr KeyRow<Words> kWords[] = {
    {Key("deck", "the deck in the usual keyword form, from the file's own folder").Needed(),
     &Words::deck},
    {Key("groups", "who holds the limits of groups and the network")
         .OneOf("deck|host")
         .Else("host"),
     &Words::groups},
    {Key("shut_wells", "who may open a well that the deck has shut")
         .OneOf("deck|host")
         .Else("deck"),
     &Words::shutWells},
    {Key("rungs", "of an inflow sweep, those that flow solves").OneOf("few|all").Else("few"),
     &Words::rungs},
};

constexpr KeyRow<LinkSettings> kKeys[] = {
    {Key("keep", "of the deck's limits, those that hold beside the host's")
         .Else("[\"bottom_hole_pressure\"]"),
     &LinkSettings::keptLimits},
    {Key("wells", "that the host may take over; empty for all").Else("all"), &LinkSettings::wells},
    {Key("flow", "the program").Else("flow"), &LinkSettings::program},
    {Key("flow_options", "for flow, after the adapter's own"), &LinkSettings::options},
    {Key("temperature", "of the produced fluids, in the deck's units").Else("60 degF, 15.6 degC"),
     &LinkSettings::temperature},
    {Key("question_seconds", "that flow may take to answer").In({1, 86400}).Else("60"),
     &LinkSettings::secondsForQuestion},
    {Key("way_back", "restart files, so that a controller can go back in time").Else("true"),
     &LinkSettings::keepsWayBack},
};

constexpr KeyRow<ReportGrid> kGridKeys[] = {
    {Key("report_step", "how far the report steps lie apart", toml_reader::Quantity::kDays)
         .In({0.01, 3660})
         .OneOf("month|deck")
         .Else("month"),
     &ReportGrid::days},
};

DescribedTable ReadFile(const std::filesystem::path& path) {
  constexpr toml_reader::Wording kWording{.list = "a list of texts"};
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  if (!in || !(text << in.rdbuf())) throw LinkFault(path.string() + ":1: the file can't be read");
  return DescribedTable::ReadText(text.str(), path.string(), kWording);
}

/// The host's days, which it names in the environment: "2028-03-01 2028-04-15".
std::vector<toml_reader::Date> HostDays() {
  constexpr size_t kLongest = 65536;
  std::istringstream words(platform::ReadEnvironment("GANTRY_EVENT_DAYS", kLongest).value_or(""));
  std::vector<toml_reader::Date> days;
  for (std::string word; words >> word;) {
    const toml_reader::Date day = toml_reader::DateOf(word);
    if (toml_reader::IsValid(day)) days.push_back(day);
  }
  return days;
}

void ReadGrid(const DescribedTable& file, ReportGrid& grid) {
  grid.hostDays = HostDays();
  if (!file.Read(kGridKeys, grid)) return;
  if (grid.days > 0.0) {
    grid.kind = ReportGrid::Kind::kDays;
  } else if (file.Text("report_step", "month") == "deck") {
    grid.kind = ReportGrid::Kind::kDeck;
  }
}

void CheckLimits(const DescribedTable& file, const LinkSettings& settings) {
  for (const std::string& limit : settings.keptLimits) {
    if (std::ranges::find(kLimits, limit) == kLimits.end()) {
      file.Fail("keep", "'keep' knows no limit '" + limit + "'");
    }
  }
}

LinkSettings Read(const std::filesystem::path& path) {
  const DescribedTable file = ReadFile(path);
  LinkSettings settings;
  settings.keptLimits = {"bottom_hole_pressure"};
  Words words;
  file.Read(kWords, words);
  settings.deck = path.parent_path() / words.deck;
  settings.leavesGroupsToDeck = words.groups == 0;
  settings.opensShutWells = words.shutWells == 1;
  settings.solvesAllRungs = words.rungs == 1;
  file.Read(kKeys, settings);
  settings.hasTemperature = file.Has("temperature");
  ReadGrid(file, settings.grid);
  file.Try([&] { CheckLimits(file, settings); });
  file.RejectUnknownKeys();
  file.ThrowFaults();
  return settings;
}

}  // namespace

LinkSettings ReadLinkSettings(const std::filesystem::path& path) {
  try {
    return Read(path);
  } catch (const toml_reader::FileError& fault) {
    throw LinkFault(fault.what());
  }
}

std::string SettingsReference() {
  return toml_reader::KeyLines(kWords) + toml_reader::KeyLines(kGridKeys) +
         toml_reader::KeyLines(kKeys);
}

}  // namespace gantry::flowlink
