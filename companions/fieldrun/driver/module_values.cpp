#include "fieldrun/driver/module_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "platform/text.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

constexpr std::array<std::string_view, 3> kCommands{"StartIX", "StopIX", "RunToTime"};

std::optional<double> NumberOf(std::string_view text) {
  return ParseNumber<double>(text.substr(text.starts_with('+') ? 1 : 0));
}

/// None for what can only be written.
std::optional<std::string> ReadBack(DriverModel& model, const std::string& path) {
  try {
    return model.Get(path);
  } catch (const DriverFailure&) {
    return std::nullopt;
  }
}

}  // namespace

void SetProperty(DriverModel& model, const std::string& path, const std::string& value) {
  model.Set(path, value);
  const std::optional<std::string> kept = ReadBack(model, path);
  if (!kept || *kept == value) return;
  const std::optional<double> wanted = NumberOf(value);
  const std::optional<double> number = NumberOf(*kept);
  if (!wanted && number) {
    throw DriverFailure(
        fmt::format("{} takes a number; \"{}\" has made it {}", path, value, *kept));
  }
  // Numbers come back with six digits.
  const bool isSame = wanted && number && std::abs(*wanted - *number) <= 1e-5 * std::abs(*wanted);
  if (!isSame) fmt::print(stderr, "fieldrun: {} is {} now, not {}\n", path, *kept, value);
}

std::string WhyNoCommand(const std::string& command) {
  const std::string_view text(command);
  const std::string_view head = text.substr(0, text.find('('));
  const size_t dot = head.find('.');
  if (dot == std::string_view::npos || !platform::EqualNoCase(head.substr(0, dot), "Intersect")) {
    return {};
  }
  const size_t begin = std::min(head.find_first_not_of(". \t", dot), head.size());
  std::string_view word = head.substr(begin);
  word = word.substr(0, word.find_last_not_of(" \t") + 1);
  const bool isKnown = std::ranges::any_of(
      kCommands, [&](std::string_view known) { return platform::EqualNoCase(known, word); });
  if (isKnown) return {};
  return fmt::format("the module has no command \"{}\"; it has {}", word,
                     fmt::join(kCommands, ", "));
}

}  // namespace gantry::fieldrun
