#include "fieldrun/verbs/run_script.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "described_toml/near_word.h"
#include "fieldrun/case/case_model.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/driver/module_values.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kBlanks = " \t\r";

// Cuts the first word off a text, with the blanks around it.
std::string TakeWord(std::string& text) {
  text.erase(0, std::min(text.find_first_not_of(kBlanks), text.size()));
  std::string word = text.substr(0, text.find_first_of(kBlanks));
  text.erase(0, word.size());
  text.erase(0, std::min(text.find_first_not_of(kBlanks), text.size()));
  return word;
}

}  // namespace

RunScript::Line RunScript::Parse(const std::string& text, const std::string& file, int number) {
  std::string rest = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  Line line;
  const std::string step = TakeWord(rest);
  line.step = ParseNumber<size_t>(step).value_or(0);
  if (step != "*" && line.step == 0) {
    throw CaseError(file, number, "a line begins with the number of a step, or with *");
  }
  const std::string action = TakeWord(rest);
  static constexpr std::array<std::string_view, 3> kActions{"get", "set", "do"};
  if (std::ranges::find(kActions, action) == kActions.end()) {
    throw CaseError(
        file, number,
        "after the step stands get, set or do" + toml_reader::DidYouMean(action, kActions));
  }
  line.action = action == "get" ? Action::kGet : action == "set" ? Action::kSet : Action::kDo;
  // A command may hold blanks; a path is one word.
  line.subject = line.action == Action::kDo ? std::exchange(rest, "") : TakeWord(rest);
  line.value = rest;
  if (line.subject.empty()) throw CaseError(file, number, action + " needs something to act on");
  if (line.action == Action::kSet && rest.empty())
    throw CaseError(file, number, "set needs a value");
  if (line.action == Action::kGet && !rest.empty())
    throw CaseError(file, number, "get takes one path");
  if (line.action == Action::kDo) {
    const std::string fault = WhyNoCommand(line.subject);
    if (!fault.empty()) throw CaseError(file, number, fault);
  }
  return line;
}

RunScript RunScript::Read(const std::string& path) {
  std::istringstream file(ReadInputFile(path));
  RunScript script;
  std::string text;
  for (int number = 1; std::getline(file, text); ++number) {
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos || text[first] == '#') continue;
    script.lines_.push_back(Parse(text, path, number));
  }
  return script;
}

void RunScript::RunStep(size_t step, DriverModel& model, std::FILE* output) const {
  for (const Line& line : lines_) {
    if (line.step != 0 && line.step != step) continue;
    switch (line.action) {
      case Action::kGet:
        fmt::print(output, "step {}: {} = {}\n", step, line.subject, model.Get(line.subject));
        break;
      case Action::kSet:
        SetProperty(model, line.subject, line.value);
        break;
      case Action::kDo:
        model.Do(line.subject);
        break;
    }
  }
}

}  // namespace gantry::fieldrun
