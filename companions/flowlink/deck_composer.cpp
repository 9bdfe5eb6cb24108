#include "flowlink/deck_composer.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "flowlink/deck_keywords.h"
#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

constexpr double kSameTimeDays = 1e-4;
constexpr double kDay = 86400.0;  // seconds

struct Refusal {
  std::string_view keyword;
  std::string_view reason;
};
constexpr Refusal kRefused[] = {
    {"LAB", "its units have no place in the protocol"},
    {"PATHS", "paths must stand in full"},
    {"RESTART", "the run must begin at its start"},
    {"COMPS", "only black-oil decks can be driven"},
    {"ACTIONX", "it changes wells that the host controls"},
    {"GCONPROD", "group limits are the host's"},
    {"GCONINJE", "group limits are the host's"},
    {"BRANPROP", "the network is the host's"},
    {"NODEPROP", "the network is the host's"},
    {"GRUPNET", "the network is the host's"},
    {"GRUPTREE", "the network is the host's"},
};

void RefuseForeign(const DeckKeyword& keyword) {
  for (const Refusal& refusal : kRefused) {
    if (keyword.name != refusal.keyword) continue;
    throw LinkFault(keyword.place + ": " + keyword.name +
                    " can't be taken over: " + std::string(refusal.reason));
  }
}

double NumberOf(const DeckKeyword& keyword, const std::string& item) {
  double number = 0.0;
  const char* end = item.data() + item.size();
  const auto read = std::from_chars(item.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end) return number;
  throw LinkFault(keyword.place + ": " + keyword.name + " holds '" + item + "' for a number");
}

DeckTime DateIn(const DeckKeyword& keyword, const DeckRecord& record) {
  try {
    return ReadDeckDate(record);
  } catch (const LinkFault& fault) {
    throw LinkFault(keyword.place + ": " + keyword.name + ": " + fault.what());
  }
}

void Append(const DeckKeyword& keyword, std::string& text) {
  text += keyword.name + "\n";
  for (const std::string& line : keyword.lines) text += line + "\n";
}

/// flow counts whole seconds, and a restart finds its time only to the second.
std::string StepTo(DeckTime start, double days) {
  return "DATES\n" + WriteDeckDate(start + std::chrono::seconds(std::llround(days * kDay))) +
         " /\n/\n";
}

/// What the deck orders at one time of its schedule.
struct Block {
  double days;
  std::string text;
};

class Composer {
 public:
  Composer(const LinkSettings& settings, const std::string& script,
           const std::vector<std::string>& vectors, const std::optional<RestartPoint>& restart)
      : settings_(settings), script_(script), vectors_(vectors), restart_(restart) {}

  ComposedDeck Compose() {
    composed_.units = "METRIC";
    OrderRestartFiles();
    for (const DeckKeyword& keyword : ReadDeckKeywords(settings_.deck)) {
      if (keyword.name == "END") break;
      RefuseForeign(keyword);
      isInSchedule_ ? TakeScheduled(keyword) : TakeStatic(keyword);
    }
    Check();
    WriteSchedule();
    return std::move(composed_);
  }

 private:
  void TakeStatic(const DeckKeyword& keyword) {
    if (keyword.name == "SCHEDULE") {
      isInSchedule_ = true;
      return;
    }
    if (keyword.name == "FIELD") composed_.units = keyword.name;
    if (keyword.name == "SUMMARY") hasSummary_ = true;
    if (keyword.name == "START") TakeStart(keyword);
    if (keyword.name == "DENSITY") TakeDensity(keyword);
    Append(keyword, composed_.text);
    if (!restart_) return;
    if (keyword.name == "UNIFOUT") composed_.text += "UNIFIN\n";
    if (keyword.name == "SOLUTION") {
      composed_.text +=
          "RESTART\n'" + restart_->caseName + "' " + std::to_string(restart_->report) + " /\n";
    }
  }

  void TakeStart(const DeckKeyword& keyword) {
    const auto records = RecordsOf(keyword);
    composed_.start = DateIn(keyword, records.empty() ? DeckRecord() : records.front());
    hasStart_ = true;
  }

  void TakeDensity(const DeckKeyword& keyword) {
    const auto records = RecordsOf(keyword);
    if (records.empty() || records.front().size() < 3) return;
    double* const densities[] = {&composed_.oilDensity, &composed_.waterDensity,
                                 &composed_.gasDensity};
    for (size_t i = 0; i < 3; ++i) {
      const std::string& item = records.front()[i];
      if (!item.empty()) *densities[i] = NumberOf(keyword, item);
    }
  }

  void TakeScheduled(const DeckKeyword& keyword) {
    if (keyword.name == "TSTEP") return TakeSteps(keyword);
    if (keyword.name == "DATES") return TakeDates(keyword);
    if (keyword.name == "WCONINJE" || keyword.name == "WCONINJH") TakeInjectors(keyword);
    Append(keyword, blocks_.back().text);
    if (keyword.name == "RPTRST" || keyword.name == "RPTSCHED") OrderRestartFiles();
  }

  /// One for each report step, whatever the deck says.
  void OrderRestartFiles() {
    if (settings_.keepsWayBack) blocks_.back().text += "RPTRST\nBASIC=2 /\n";
  }

  void TakeSteps(const DeckKeyword& keyword) {
    for (const DeckRecord& record : RecordsOf(keyword)) {
      for (const std::string& item : record) {
        GoTo(keyword, blocks_.back().days + NumberOf(keyword, item));
      }
    }
  }

  void TakeDates(const DeckKeyword& keyword) {
    for (const DeckRecord& record : RecordsOf(keyword)) {
      if (record.empty()) continue;
      const auto since = DateIn(keyword, record) - composed_.start;
      GoTo(keyword, std::chrono::duration<double>(since).count() / kDay);
    }
  }

  void GoTo(const DeckKeyword& keyword, double days) {
    if (!(days > blocks_.back().days)) {
      throw LinkFault(keyword.place + ": " + keyword.name + " doesn't go on in time");
    }
    blocks_.push_back({days, ""});
  }

  void TakeInjectors(const DeckKeyword& keyword) {
    for (const DeckRecord& record : RecordsOf(keyword)) {
      if (record.size() >= 2) composed_.injected.emplace_back(record[0], record[1]);
    }
  }

  void Check() const {
    const std::string deck = settings_.deck.string();
    if (!hasStart_) throw LinkFault(deck + " has no START");
    if (!isInSchedule_) throw LinkFault(deck + " has no SCHEDULE section");
    if (blocks_.size() < 2) throw LinkFault(deck + " has no TSTEP and no DATES: nothing to run");
  }

  void WriteSchedule() {
    std::string& text = composed_.text;
    if (!hasSummary_) text += "SUMMARY\n";
    for (const std::string& vector : vectors_) text += vector + "\n/\n";
    text += restart_ ? "SCHEDULE\nSKIPREST\n" : "SCHEDULE\n";
    text += blocks_.front().text;
    const double begin = restart_ ? restart_->days : 0.0;
    const std::vector<double> times = ReportTimes();
    const auto next = std::ranges::upper_bound(times, begin + kSameTimeDays);
    for (auto time = times.begin(); time != next; ++time) WriteStepTo(*time);
    text += "PYACTION\nFLOWLINK UNLIMITED /\n'" + script_ + "' /\n";
    composed_.ends = {begin + kFirstStepDays};
    composed_.ends.insert(composed_.ends.end(), next, times.end());
    for (const double end : composed_.ends) WriteStepTo(end);
    text += "END\n";
  }

  /// The step and what the deck orders at its end.
  void WriteStepTo(double end) {
    composed_.text += StepTo(composed_.start, end);
    const auto block = std::ranges::find(blocks_, end, &Block::days);
    if (block == blocks_.end() || block->text.empty()) return;
    composed_.text += block->text;
    composed_.orders.push_back(end);
  }

  /// The times of the deck, and those of the grid that don't stand at one of them already.
  std::vector<double> ReportTimes() const {
    std::vector<double> times;
    for (const Block& block : blocks_) times.push_back(block.days);
    const std::vector<double> ofDeck = times;
    for (const double time : GridTimes(settings_.grid, composed_.start, times.back())) {
      const auto next = std::ranges::lower_bound(ofDeck, time - kSameTimeDays);
      if (next == ofDeck.end() || *next > time + kSameTimeDays) times.push_back(time);
    }
    std::ranges::sort(times);
    times.erase(times.begin());
    return times;
  }

  const LinkSettings& settings_;
  const std::string& script_;
  const std::vector<std::string>& vectors_;
  const std::optional<RestartPoint>& restart_;
  ComposedDeck composed_;
  std::vector<Block> blocks_ = {{0.0, ""}};
  bool isInSchedule_ = false;
  bool hasSummary_ = false;
  bool hasStart_ = false;
};

}  // namespace

ComposedDeck ComposeDeck(const LinkSettings& settings, const std::string& script,
                         const std::vector<std::string>& summaryVectors,
                         const std::optional<RestartPoint>& restart) {
  return Composer(settings, script, summaryVectors, restart).Compose();
}

}  // namespace gantry::flowlink
