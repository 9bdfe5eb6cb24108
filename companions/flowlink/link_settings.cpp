#include "flowlink/link_settings.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>

#include "described_toml/described_table.h"
#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

using toml_reader::DescribedTable;
using toml_reader::Key;
using toml_reader::KeyRow;

constexpr std::array<std::string_view, 7> kLimits = {
    "bottom_hole_pressure", "oil_rate",       "water_rate",          "gas_rate",
    "liquid_rate",          "reservoir_rate", "tubing_head_pressure"};

constexpr KeyRow<LinkSettings> kKeys[] = {
    {Key("keep", "of the deck's limits, those that hold beside the host's"),
     &LinkSettings::keptLimits},
    {Key("wells", "that the host may take over; empty for all"), &LinkSettings::wells},
    {Key("flow", "the program"), &LinkSettings::program},
    {Key("flow_options", "for flow, after the adapter's own"), &LinkSettings::options},
    {Key("temperature", "of the produced fluids, in the deck's units"), &LinkSettings::temperature},
    {Key("question_seconds", "that flow may take to answer").In({1, 86400}),
     &LinkSettings::secondsForQuestion},
    {Key("way_back", "restart files, so that a controller can go back in time"),
     &LinkSettings::keepsWayBack},
};

constexpr KeyRow<ReportGrid> kGridKeys[] = {
    {Key("report_step", "how far the report steps lie apart", toml_reader::Quantity::kDays)
         .In({0.01, 3660})
         .OneOf("month|deck"),
     &ReportGrid::days},
};

DescribedTable ReadFile(const std::filesystem::path& path) {
  constexpr toml_reader::Wording kWording{.list = "a list of texts"};
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  if (!in || !(text << in.rdbuf())) throw LinkFault(path.string() + ":1: the file can't be read");
  return DescribedTable::ReadText(text.str(), path.string(), kWording);
}

void ReadGrid(const DescribedTable& file, ReportGrid& grid) {
  if (!file.Read(kGridKeys, grid)) return;
  if (grid.days > 0.0) {
    grid.kind = ReportGrid::Kind::kDays;
  } else if (file.Text("report_step", "month") == "deck") {
    grid.kind = ReportGrid::Kind::kDeck;
  }
}

/// Whether the key gives something to the deck; otherwise it is the host's.
bool IsDecks(const DescribedTable& file, std::string_view key, std::string_view fallback) {
  return file.Word(key, fallback, "deck|host") == 0;
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
  file.Try([&] { settings.deck = path.parent_path() / file.Text("deck"); });
  file.Read(kKeys, settings);
  settings.hasTemperature = file.Has("temperature");
  ReadGrid(file, settings.grid);
  file.Try([&] { settings.leavesGroupsToDeck = IsDecks(file, "groups", "host"); });
  file.Try([&] { settings.opensShutWells = !IsDecks(file, "shut_wells", "deck"); });
  file.Try([&] { settings.solvesAllRungs = file.Word("rungs", "few", "few|all") == 1; });
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

}  // namespace gantry::flowlink
