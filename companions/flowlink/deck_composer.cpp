#include "flowlink/deck_composer.h"

#include <algorithm>
#include <cmath>

#include "described_toml/calendar.h"
#include "flowlink/deck_keywords.h"
#include "flowlink/link_fault.h"
#include "flowlink/step_lengths.h"

namespace gantry::flowlink {

namespace {

constexpr double kSameTimeDays = 1e-4;
constexpr double kMostDays = 3652059;  // 9999 years

DeckTime DateIn(const DeckKeyword& keyword, const DeckRecord& record) {
  try {
    return ReadDeckDate(record);
  } catch (const LinkFault& fault) {
    throw LinkFault(keyword.place.Text() + ": " + keyword.name + ": " + fault.what());
  }
}

/// flow counts whole seconds, and a restart finds its time only to the second.
std::string StepTo(DeckTime start, double days) {
  return "DATES\n" +
         WriteDeckDate(start +
                       std::chrono::seconds(std::llround(days * toml_reader::kSecondsPerDay))) +
         " /\n/\n";
}

/// Keywords of the adapter's own as if the deck had them.
DeckKeyword OwnKeyword(const std::string& name, const std::string& line) {
  return {name, name, {}, {{0, line}}};
}

bool IsTuning(const std::string& name) { return name == "TUNING" || name == "NEXTSTEP"; }

/// What the deck orders at one time of its schedule.
struct Block {
  double days;
  std::vector<DeckKeyword> keywords;
};

class Composer {
 public:
  Composer(const LinkSettings& settings, const std::string& script,
           const std::vector<std::string>& vectors, const RunBegin& begin)
      : settings_(settings), script_(script), vectors_(vectors), begin_(begin) {}

  /// Takes in the deck; everything found so far stands in `findings` even when this throws.
  void Read() {
    using namespace std::chrono;
    composed_.units = "METRIC";
    composed_.start = sys_days(year(1983) / 1 / 1);
    OrderRestartFiles();
    for (DeckKeyword& keyword : ReadDeckKeywords(settings_.deck)) {
      section_ = SectionAt(keyword, section_);
      const auto found = Judge(keyword, section_, {settings_.leavesGroupsToDeck});
      findings.insert(findings.end(), found.begin(), found.end());
      section_ == DeckSection::kSchedule ? TakeScheduled(std::move(keyword)) : TakeStatic(keyword);
    }
    Check();
  }

  ComposedDeck Compose() {
    Read();
    RefuseWhatCantBeCoupled();
    composed_.warnings = findings;
    WriteSchedule();
    return std::move(composed_);
  }

  std::vector<DeckFinding> findings;

 private:
  void RefuseWhatCantBeCoupled() const {
    const auto refusal = std::ranges::find(findings, true, &DeckFinding::isRefusal);
    if (refusal == findings.end()) return;
    const auto others = std::ranges::count(findings, true, &DeckFinding::isRefusal) - 1;
    throw LinkFault(
        refusal->Text() +
        (others == 0 ? "" : " (and " + std::to_string(others) + " more: flowlink --check)"));
  }

  void TakeStatic(const DeckKeyword& keyword) {
    const bool isInRunspec = section_ == DeckSection::kRunspec;
    if (isInRunspec && keyword.name == "FIELD") composed_.units = keyword.name;
    if (isInRunspec && keyword.name == "START") TakeStart(keyword);
    if (isInRunspec) TakeFluid(keyword.name);
    if (keyword.name == "SUMMARY") hasSummary_ = true;
    if (keyword.name == "DENSITY") TakeDensity(keyword);
    composed_.text.Append(keyword);
    if (!begin_.restart) return;
    if (keyword.name == "UNIFOUT") composed_.text.Append("UNIFIN\n");
    if (keyword.name == "SOLUTION") {
      composed_.text.Append("RESTART\n'" + begin_.restart->caseName + "' " +
                            std::to_string(begin_.restart->report) + " /\n");
    }
  }

  void TakeFluid(const std::string& name) {
    if (name == "OIL") composed_.fluids.hasOil = true;
    if (name == "WATER") composed_.fluids.hasWater = true;
    if (name == "GAS") composed_.fluids.hasGas = true;
  }

  void TakeStart(const DeckKeyword& keyword) {
    const auto records = RecordsOf(keyword);
    composed_.start = DateIn(keyword, records.empty() ? DeckRecord() : records.front());
  }

  void TakeDensity(const DeckKeyword& keyword) {
    const auto records = RecordsOf(keyword);
    if (records.empty() || records.front().size() < 3) return;
    double* const densities[] = {&composed_.oilDensity, &composed_.waterDensity,
                                 &composed_.gasDensity};
    for (size_t i = 0; i < 3; ++i) {
      const std::string& item = records.front()[i];
      if (!item.empty()) *densities[i] = DeckNumber(keyword, item);
    }
  }

  void TakeScheduled(DeckKeyword keyword) {
    if (keyword.name == "SCHEDULE") return;
    if (keyword.name == "TSTEP") return TakeSteps(keyword);
    if (keyword.name == "DATES") return TakeDates(keyword);
    if (IsTuning(keyword.name) && !EnablesTuning(settings_.options)) return;
    const bool orderedFiles = keyword.name == "RPTRST" || keyword.name == "RPTSCHED";
    TakeOrders(keyword);
    blocks_.back().keywords.push_back(std::move(keyword));
    if (orderedFiles) OrderRestartFiles();
  }

  /// What stands in an action is ordered only once its condition holds.
  void TakeOrders(const DeckKeyword& keyword) {
    if (keyword.name == "ACTIONX") isInAction_ = true;
    if (keyword.name == "ENDACTIO") isInAction_ = false;
    if (isInAction_) return;
    for (WellOrder& order : OrdersOf(keyword, blocks_.back().days)) {
      composed_.wellOrders.push_back(std::move(order));
    }
  }

  /// One for each report step, whatever the deck says.
  void OrderRestartFiles() {
    if (!settings_.keepsWayBack) return;
    blocks_.back().keywords.push_back(OwnKeyword("RPTRST", "BASIC=2 /"));
  }

  void TakeSteps(const DeckKeyword& keyword) {
    for (const DeckRecord& record : RecordsOf(keyword)) {
      for (const std::string& item : record) {
        GoTo(keyword, blocks_.back().days + DeckNumber(keyword, item));
      }
    }
  }

  void TakeDates(const DeckKeyword& keyword) {
    for (const DeckRecord& record : RecordsOf(keyword)) {
      if (record.empty()) continue;
      const auto since = DateIn(keyword, record) - composed_.start;
      GoTo(keyword, std::chrono::duration<double>(since).count() / toml_reader::kSecondsPerDay);
    }
  }

  void GoTo(const DeckKeyword& keyword, double days) {
    if (!(days > blocks_.back().days)) {
      throw LinkFault(keyword.place.Text() + ": " + keyword.name + " doesn't go on in time");
    }
    if (days > kMostDays) {
      throw LinkFault(keyword.place.Text() + ": " + keyword.name + " goes on for too long");
    }
    blocks_.push_back({days, {}});
  }

  void Check() const {
    const std::string deck = settings_.deck.string();
    if (section_ != DeckSection::kSchedule) throw LinkFault(deck + " has no SCHEDULE section");
    if (blocks_.size() < 2) throw LinkFault(deck + " has no TSTEP and no DATES: nothing to run");
  }

  void WriteSchedule() {
    DeckText& text = composed_.text;
    if (!hasSummary_) text.Append("SUMMARY\n");
    for (const std::string& vector : vectors_) text.Append(vector + "\n/\n");
    text.Append(begin_.restart ? "SCHEDULE\nSKIPREST\n" : "SCHEDULE\n");
    for (const DeckKeyword& keyword : blocks_.front().keywords) text.Append(keyword);
    const double begin = begin_.restart ? begin_.restart->days : 0.0;
    const std::vector<double> times = ReportTimes();
    const auto next = std::ranges::upper_bound(times, begin + kSameTimeDays);
    for (auto time = times.begin(); time != next; ++time) WriteStepTo(*time);
    if (!EnablesTuning(settings_.options)) text.Append(TuningLikeAlone(settings_.options));
    text.Append("PYACTION\nFLOWLINK UNLIMITED /\n'" + script_ + "' /\n");
    if (begin_.orders) text.Append(*begin_.orders);
    if (!begin_.orders) composed_.ends = {begin + kFirstStepDays};
    composed_.ends.insert(composed_.ends.end(), next, times.end());
    for (const double end : composed_.ends) WriteStepTo(end);
    text.Append("END\n");
  }

  /// The step and what the deck orders at its end.
  void WriteStepTo(double end) {
    composed_.text.Append(StepTo(composed_.start, end));
    const auto block = std::ranges::lower_bound(blocks_, end, {}, &Block::days);
    if (block == blocks_.end() || block->days != end || block->keywords.empty()) return;
    for (const DeckKeyword& keyword : block->keywords) composed_.text.Append(keyword);
    composed_.orders.push_back(end);
  }

  std::vector<double> ReportTimes() const {
    std::vector<double> times;
    for (const Block& block : blocks_) times.push_back(block.days);
    times = MergeTimes(settings_.grid, composed_.start, times);
    times.erase(times.begin());
    return times;
  }

  const LinkSettings& settings_;
  const std::string& script_;
  const std::vector<std::string>& vectors_;
  const RunBegin& begin_;
  ComposedDeck composed_;
  std::vector<Block> blocks_ = {{0.0, {}}};
  DeckSection section_ = DeckSection::kRunspec;
  bool hasSummary_ = false;
  bool isInAction_ = false;
};

}  // namespace

void DeckText::Append(const std::string& lines) {
  size_t begin = 0;
  for (size_t end = lines.find('\n'); end != std::string::npos; end = lines.find('\n', begin)) {
    Append(lines.substr(begin, end - begin), {});
    begin = end + 1;
  }
}

void DeckText::Append(const DeckKeyword& keyword) {
  Append(keyword.head, keyword.place);
  for (const DeckLine& line : keyword.lines) Append(line.text, {keyword.place.file, line.number});
}

void DeckText::Append(const std::string& line, const DeckPlace& place) {
  text_ += line + "\n";
  ++lines_;
  if (!stretches_.empty()) {
    const Stretch& last = stretches_.back();
    const bool goesOn = last.place.line + (lines_ - last.firstLine) == place.line;
    if (last.place.file == place.file && (goesOn || place.file.empty())) return;
  }
  stretches_.push_back({lines_, place});
}

std::optional<DeckPlace> DeckText::PlaceOf(size_t line) const {
  const auto next = std::ranges::upper_bound(stretches_, line, {}, &Stretch::firstLine);
  if (next == stretches_.begin() || line > lines_) return std::nullopt;
  const Stretch& stretch = *(next - 1);
  if (stretch.place.file.empty()) return std::nullopt;
  return DeckPlace{stretch.place.file, stretch.place.line + (line - stretch.firstLine)};
}

ComposedDeck ComposeDeck(const LinkSettings& settings, const std::string& script,
                         const std::vector<std::string>& summaryVectors, const RunBegin& begin) {
  return Composer(settings, script, summaryVectors, begin).Compose();
}

std::vector<DeckFinding> CheckDeck(const LinkSettings& settings) {
  const RunBegin begin;
  Composer composer(settings, "", {}, begin);
  try {
    composer.Read();
  } catch (const LinkFault& fault) {
    composer.findings.push_back({{}, fault.what(), true});
  }
  return std::move(composer.findings);
}

}  // namespace gantry::flowlink
