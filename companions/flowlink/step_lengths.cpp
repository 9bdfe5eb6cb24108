#include "flowlink/step_lengths.h"

#include <algorithm>
#include <string_view>

namespace gantry::flowlink {

namespace {

/// An option of flow 2022.10 and its default; empty where TUNING's own default is the same.
struct StepOption {
  std::string_view name;
  std::string_view fallback;
};

/// The first items of TUNING, in its order; lengths in days. No option without a name.
constexpr StepOption kItems[] = {
    {"--initial-time-step-in-days=", "1"},
    {"--solver-max-time-step-in-days=", "365"},
    {"", ""},
    {"", ""},
    {"--solver-max-growth=", "3"},
    {"", "1E-7"},  // flow takes it for the shortest step, in seconds
    {"--solver-restart-factor=", "0.33"},
    {"--solver-growth-factor=", "2"},
    {"", ""},
    {"--time-step-after-event-in-days=", ""},
};

/// flow takes the last of several.
std::string ValueOf(const StepOption& option, const std::vector<std::string>& options) {
  std::string value(option.fallback);
  for (const std::string& given : options) {
    if (!option.name.empty() && given.starts_with(option.name)) {
      value = given.substr(option.name.size());
    }
  }
  return value;
}

}  // namespace

bool EnablesTuning(const std::vector<std::string>& options) {
  const auto isIt = [](const std::string& option) {
    return option == "--enable-tuning=true" || option == "--enable-tuning";
  };
  return std::ranges::any_of(options, isIt);
}

std::string TuningLikeAlone(const std::vector<std::string>& options) {
  std::string items;
  for (const StepOption& option : kItems) {
    const std::string value = ValueOf(option, options);
    items += value.empty() ? " 1*" : " " + value;
  }
  return "TUNING\n" + items + " /\n/\n/\n";
}

}  // namespace gantry::flowlink
