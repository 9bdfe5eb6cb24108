#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include <fmt/format.h>

#include "fieldrun/case/case_model.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/case/vfp_table.h"
#include "text/deck_text.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

constexpr size_t kMostItems = 100'000;         // of a record
constexpr size_t kMostPressures = 10'000'000;  // of a table

/// 0 of nothing, and where it isn't finite.
double Ratio(double part, double whole) {
  const double ratio = part / whole;
  return std::isfinite(ratio) ? ratio : 0;
}

/// A word of a keyword for what an axis measures.
struct AxisWord {
  std::string_view word;
  std::string_view name;
  FlowFunction of;
};

using Flow = const Rates&;
constexpr AxisWord kProducedFlow[] = {{"OIL", "oil", [](Flow f) { return f.oil; }},
                                      {"LIQ", "liquid", [](Flow f) { return f.oil + f.water; }},
                                      {"GAS", "gas", [](Flow f) { return f.gas; }}};
constexpr AxisWord kInjectedFlow[] = {{"OIL", "oil", [](Flow f) { return f.oil; }},
                                      {"WAT", "water", [](Flow f) { return f.water; }},
                                      {"GAS", "gas", [](Flow f) { return f.gas; }}};
constexpr AxisWord kWaterRatios[] = {
    {"WOR", "water-oil ratio", [](Flow f) { return Ratio(f.water, f.oil); }},
    {"WCT", "water cut", [](Flow f) { return Ratio(f.water, f.oil + f.water); }},
    {"WGR", "water-gas ratio", [](Flow f) { return Ratio(f.water, f.gas); }}};
constexpr AxisWord kGasRatios[] = {
    {"GOR", "gas-oil ratio", [](Flow f) { return Ratio(f.gas, f.oil); }},
    {"GLR", "gas-liquid ratio", [](Flow f) { return Ratio(f.gas, f.oil + f.water); }},
    {"OGR", "oil-gas ratio", [](Flow f) { return Ratio(f.oil, f.gas); }}};

/// A keyword's items up to the slash, within the file's text; those that are left at their default
/// are empty.
struct Record {
  std::vector<std::string_view> items;
  int line = 0;  ///< on which it begins

  std::string_view At(size_t place) const { return place < items.size() ? items[place] : ""; }
};

/// A line without its remark and what stands behind the end of a record.
std::string_view Stripped(std::string_view line) {
  char quote = 0;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\'' || line[i] == '"')
      quote = quote == 0 ? line[i] : quote == line[i] ? 0 : quote;
    if (quote == 0 && line[i] == '-' && line.substr(i).starts_with("--")) return line.substr(0, i);
    if (quote == 0 && line[i] == '/') return line.substr(0, i + 1);
  }
  return line;
}

/// Reads the lift tables of one file, one after the other.
class VfpReader {
 public:
  VfpReader(std::string path, UnitSystem units)
      : path_(std::move(path)), units_(units), text_(ReadInputFile(path_)) {}

  /// False when there is no further keyword.
  bool FindKeyword();
  VfpTable Table();
  int Line() const { return keywordLine_; }
  [[noreturn]] void Fail(int line, const std::string& reason) const {
    throw CaseError(path_, line, reason);
  }

 private:
  bool NextLine();
  Record NextRecord();
  void AddItems(std::string_view text, Record& record) const;
  void AddItem(std::string_view item, Record& record) const;
  double Number(const Record& record, size_t place) const;
  int WholeNumber(const Record& record, size_t place, size_t most) const;
  void ReadHead(VfpTable& table);
  template <size_t N>
  VfpAxis Axis(const Record& record, size_t place, const AxisWord (&words)[N]) const;
  UnitSystem Units(const Record& record, size_t place) const;
  void Values(VfpAxis& axis);
  void Pressures(VfpTable& table);
  size_t RowOf(const VfpTable& table, const Record& record) const;

  std::string path_;
  UnitSystem units_;
  std::string text_;
  size_t next_ = 0;  ///< in the text, where the next line begins
  int lineNumber_ = 0;
  std::string_view line_;  ///< stripped
  std::string keyword_;
  int keywordLine_ = 0;
};

bool VfpReader::NextLine() {
  if (next_ >= text_.size()) return false;
  const size_t end = std::min(text_.find('\n', next_), text_.size());
  line_ = Stripped(std::string_view(text_).substr(next_, end - next_));
  next_ = end + 1;
  ++lineNumber_;
  return true;
}

bool VfpReader::FindKeyword() {
  while (NextLine()) {
    keyword_ = InCapitals(line_.substr(0, line_.find_first_of(" \t\r")));
    keywordLine_ = lineNumber_;
    if (keyword_ == "VFPPROD" || keyword_ == "VFPINJ") return true;
  }
  return false;
}

// "3*1.5" stands for three items, "2*" for two that are left at their default.
void VfpReader::AddItem(std::string_view item, Record& record) const {
  const size_t star = item.find('*');
  const bool isRepeated = star != std::string_view::npos;
  const auto count = ParseNumber<size_t>(isRepeated ? item.substr(0, star) : "1");
  if (!count) Fail(lineNumber_, fmt::format("\"{}\" can't be read", item));
  if (*count > kMostItems - std::min(record.items.size(), kMostItems)) {
    Fail(lineNumber_, fmt::format("a record has no more than {} items", kMostItems));
  }
  record.items.insert(record.items.end(), *count, isRepeated ? item.substr(star + 1) : item);
}

void VfpReader::AddItems(std::string_view text, Record& record) const {
  constexpr std::string_view kBlanks = " \t\r,";
  for (size_t at = text.find_first_not_of(kBlanks); at != std::string_view::npos;
       at = text.find_first_not_of(kBlanks, at)) {
    const bool isQuoted = text[at] == '\'' || text[at] == '"';
    size_t end = isQuoted ? text.find(text[at], at + 1) : text.find_first_of(kBlanks, at);
    if (isQuoted && end == std::string_view::npos) Fail(lineNumber_, "a quote isn't closed");
    if (isQuoted) {
      const std::string_view inner = text.substr(at + 1, end - at - 1);
      record.items.emplace_back(inner.find_first_not_of(' ') == std::string_view::npos ? ""
                                                                                       : inner);
      at = end + 1;
      continue;
    }
    end = std::min(end, text.size());
    AddItem(text.substr(at, end - at), record);
    at = end;
  }
}

Record VfpReader::NextRecord() {
  Record record;
  while (NextLine()) {
    const bool isLast = line_.ends_with('/');
    if (record.items.empty()) record.line = lineNumber_;
    AddItems(isLast ? line_.substr(0, line_.size() - 1) : line_, record);
    if (isLast) return record;
  }
  Fail(lineNumber_, fmt::format("the file ends within the {} of line {}", keyword_, keywordLine_));
}

double VfpReader::Number(const Record& record, size_t place) const {
  const std::string_view text = record.At(place);
  const auto number = ParseDeckNumber(std::string(text));
  if (number && std::isfinite(*number)) return *number;
  Fail(record.line, text.empty() ? fmt::format("number {} of the record is missing", place + 1)
                                 : fmt::format("\"{}\" is no number", text));
}

int VfpReader::WholeNumber(const Record& record, size_t place, size_t most) const {
  const double number = Number(record, place);
  if (number != std::floor(number) || number < 1 || number > static_cast<double>(most)) {
    Fail(record.line,
         fmt::format("{} must be a whole number from 1 to {}", record.At(place), most));
  }
  return static_cast<int>(number);
}

template <size_t N>
VfpAxis VfpReader::Axis(const Record& record, size_t place, const AxisWord (&words)[N]) const {
  const std::string word = InCapitals(record.At(place));
  std::string known;
  for (const AxisWord& row : words) {
    if (word == row.word) return {row.name, row.of, {}};
    known += fmt::format("{}{}", known.empty() ? "" : ", ", row.word);
  }
  Fail(record.line,
       fmt::format("\"{}\" isn't taken; it must be one of {}", record.At(place), known));
}

UnitSystem VfpReader::Units(const Record& record, size_t place) const {
  const std::string word = InCapitals(record.At(place));
  if (word == "METRIC") return UnitSystem::kMetric;
  if (word == "FIELD") return UnitSystem::kField;
  if (!word.empty()) {
    Fail(record.line, fmt::format("units {} aren't taken; they must be METRIC or FIELD", word));
  }
  return units_;
}

void VfpReader::ReadHead(VfpTable& table) {
  constexpr size_t kMostTables = 1'000'000;
  const Record head = NextRecord();
  table.isProducer = keyword_ == "VFPPROD";
  table.number = WholeNumber(head, 0, kMostTables);
  table.datumDepth = Number(head, 1);
  table.axes[VfpTable::kHead].name = "head pressure";
  table.axes[VfpTable::kLift].name = "artificial lift";
  const size_t headType = table.isProducer ? 5 : 3;
  const std::string type = InCapitals(head.At(headType));
  if (!type.empty() && type != "THP") {
    Fail(head.line, fmt::format("\"{}\" isn't taken; it must be THP", type));
  }
  const size_t units = table.isProducer ? 7 : 4;
  table.units = Units(head, units);
  const std::string what = InCapitals(head.At(units + 1));
  if (!what.empty() && what != "BHP") {
    Fail(head.line, fmt::format("a table of {} isn't taken; it must be of BHP", what));
  }
  if (!table.isProducer) {
    table.axes[VfpTable::kFlow] = Axis(head, 2, kInjectedFlow);
    return;
  }
  table.axes[VfpTable::kFlow] = Axis(head, 2, kProducedFlow);
  table.axes[VfpTable::kWater] = Axis(head, 3, kWaterRatios);
  table.axes[VfpTable::kGas] = Axis(head, 4, kGasRatios);
}

void VfpReader::Values(VfpAxis& axis) {
  const Record record = NextRecord();
  for (size_t i = 0; i < record.items.size(); ++i) axis.values.push_back(Number(record, i));
  if (axis.values.empty()) Fail(record.line, fmt::format("there are no values of {}", axis.name));
  if (std::ranges::adjacent_find(axis.values, std::greater_equal<>()) == axis.values.end()) return;
  Fail(record.line, fmt::format("the values of {} must rise", axis.name));
}

/// Which of the table's rows of pressures a record is: its first items say so.
size_t VfpReader::RowOf(const VfpTable& table, const Record& record) const {
  const size_t count = table.isProducer ? 4 : 1;
  size_t row = 0;
  for (size_t i = count; i-- > 0;) {
    const size_t size = table.axes[i + 1].values.size();
    row = row * size + static_cast<size_t>(WholeNumber(record, i, size)) - 1;
  }
  const size_t flows = table.axes[VfpTable::kFlow].values.size();
  if (record.items.size() != count + flows) {
    Fail(record.line,
         fmt::format("the record has {} pressures; there are {} values of {}",
                     record.items.size() - count, flows, table.axes[VfpTable::kFlow].name));
  }
  return row;
}

void VfpReader::Pressures(VfpTable& table) {
  size_t size = 1;
  for (const VfpAxis& axis : table.axes) {
    size *= axis.values.size();
    if (size > kMostPressures) Fail(keywordLine_, "the table is too large");
  }
  const size_t flows = table.axes[VfpTable::kFlow].values.size();
  const size_t keys = table.isProducer ? 4 : 1;
  table.pressures.resize(size);
  std::vector<int> lineOfRow(size / flows, 0);
  for (size_t i = 0; i < lineOfRow.size(); ++i) {
    const Record record = NextRecord();
    const size_t row = RowOf(table, record);
    if (lineOfRow[row] != 0) {
      Fail(record.line, fmt::format("these pressures stand in line {} already", lineOfRow[row]));
    }
    lineOfRow[row] = record.line;
    for (size_t flow = 0; flow < flows; ++flow) {
      table.pressures[row * flows + flow] = Number(record, keys + flow);
    }
  }
}

VfpTable VfpReader::Table() {
  VfpTable table;
  ReadHead(table);
  for (const size_t axis : {VfpTable::kWater, VfpTable::kGas, VfpTable::kLift}) {
    if (!table.isProducer) table.axes[axis].values = {0};
  }
  for (VfpAxis& axis : table.axes) {
    if (axis.values.empty()) Values(axis);
  }
  Pressures(table);
  return table;
}

}  // namespace

VfpTable ReadVfpTable(const std::string& path, std::optional<int> number, UnitSystem units) {
  VfpReader reader(path, units);
  std::vector<VfpTable> tables;
  while (reader.FindKeyword()) {
    const int line = reader.Line();
    VfpTable table = reader.Table();
    const bool isWanted = !number || table.number == *number;
    if (isWanted && !tables.empty()) {
      reader.Fail(line, number ? fmt::format("there are two tables {}", *number)
                               : "this is a second table: vfp_table says which to take");
    }
    if (isWanted) tables.push_back(std::move(table));
  }
  if (!tables.empty()) return std::move(tables.front());
  reader.Fail(1, number ? fmt::format("there is no lift table {} (VFPPROD or VFPINJ)", *number)
                        : "there is no lift table (VFPPROD or VFPINJ)");
}

}  // namespace gantry::fieldrun
