#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/wire_entries.h"

namespace gantry::test {

/// One exchange of a talk.
struct Turn {
  std::string call;  ///< behind "> ": what is asked
  Texts outcome;     ///< behind "< ": what comes of it
  Texts wire;        ///< ">> " and "<< ": what goes out on the wire for it, and what comes back
};

struct Talk {
  std::string name;  ///< behind "# "
  std::vector<Turn> turns;
};

/// The talks that a file of the tests holds. Lines of other forms are comments.
std::vector<Talk> TalksIn(const std::string& file);

/// Makes every call of a talk, with a list for what comes of it, which must be as it is written. A
/// call that fails adds how it did. "..." at the end of a line is any text.
void Play(const Talk& talk, const std::function<void(const Turn& turn, Texts& told)>& act);

/// Several values as one line.
template <class... Values>
std::string Line(const Values&... values) {
  std::ostringstream text;
  text.precision(10);
  ((text << values << ' '), ...);
  return text.str().substr(0, text.str().size() - 1);
}

/// The elements of a list as one line.
template <class List>
std::string LineOf(const List& list) {
  std::string line;
  for (const auto& element : list) line += (line.empty() ? "" : " ") + Line(element);
  return line;
}

}  // namespace gantry::test
