#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "described_toml/calendar.h"

namespace gantry::fieldrun {

using toml_reader::Date;

/// Something about a number of a run that its reader should know: it may be wrong.
struct RunWarning {
  std::string topic;  ///< a short fixed word for what is doubtful, as scripts look for it
  std::string well;   ///< empty when it is of no single well
  Date date;          ///< of the step in which it first showed
  std::string text;
};

/// "P1, 2020-02-01: TEXT".
std::string ToText(const RunWarning& warning);

/// The warnings of a run, in the order in which they came: each topic once for each well.
class RunWarnings {
 public:
  /// False when the list has held one of this topic and well already.
  bool Add(const RunWarning& warning);

  const std::vector<RunWarning>& All() const { return all_; }

 private:
  std::vector<RunWarning> all_;
  std::set<std::pair<std::string, std::string>> known_;
};

}  // namespace gantry::fieldrun
