#include "simulator_side/state_file.h"

#include <cmath>
#include <cstdio>
#include <fstream>

#include "platform/environment.h"
#include "platform/file_path.h"
#include "platform/live_file.h"
#include "text/number_text.h"

namespace gantry::simulator {
namespace {

using nlohmann::json;

constexpr size_t kLongestValue = 4096;
constexpr double kSameTime = 1e-6;  // days

/// An empty value stands for none.
std::optional<std::string> Variable(const char* name) {
  auto value = platform::ReadEnvironment(name, kLongestValue);
  return value && value->empty() ? std::nullopt : value;
}

}  // namespace

std::optional<std::filesystem::path> ResultsOfHost() {
  const auto folder = Variable("GANTRY_RESULTS");
  if (!folder) return std::nullopt;
  return platform::PathOf(*folder);
}

std::optional<double> DaysToResumeAt() {
  const auto days = Variable("GANTRY_RESUME");
  if (!days) return std::nullopt;
  return ReadDouble(*days);
}

StateFile::StateFile(std::filesystem::path path, std::string format, std::string deck)
    : path_(std::move(path)), format_(std::move(format)), deck_(std::move(deck)) {}

void StateFile::Keep(double days, json state) {
  const std::string before = std::move(present_);
  present_ = json{{"days", days}, {"state", std::move(state)}}.dump();
  const std::string text = "{\"format\":" + json(format_).dump() + ",\"deck\":\"" + deck_ +
                           "\",\"states\":[" + before + (before.empty() ? "" : ",\n") + present_ +
                           "]}\n";
  const std::error_code error = platform::ReplaceLiveFile(path_, text);
  if (!error || hasFailed_) return;
  hasFailed_ = true;
  std::fprintf(stderr, "%s can't be written: %s; this run can't be resumed from here on\n",
               platform::NameOf(path_).c_str(), error.message().c_str());
}

json StateFile::Read() const {
  const std::string name = platform::NameOf(path_);
  std::ifstream file(path_, std::ios::binary);
  if (!file) throw ResumeRefused("there is no state to go on from: " + name + " can't be read");
  json content = json::parse(file, nullptr, false);
  const auto text = [&](const char* key) {
    return content.is_object() && content.contains(key) && content[key].is_string()
               ? content[key].get<std::string>()
               : std::string();
  };
  if (text("format").empty()) throw ResumeRefused(name + " isn't a whole file of states");
  if (text("format") != format_) {
    throw ResumeRefused(name + " is a \"" + text("format") + "\"; read is \"" + format_ + "\"");
  }
  if (text("deck") != deck_) {
    throw ResumeRefused(name + " is of another deck, or this one has changed since");
  }
  return content;
}

json StateFile::Take(double days) {
  const json content = Read();
  try {
    for (const json& kept : content.at("states")) {
      if (std::abs(kept.at("days").get<double>() - days) > kSameTime) continue;
      present_ = kept.dump();
      return kept.at("state");
    }
  } catch (const json::exception& error) {
    throw ResumeRefused(platform::NameOf(path_) + " isn't whole: " + error.what());
  }
  throw ResumeRefused(platform::NameOf(path_) + " has no state at " + FormatDouble(days) + " days");
}

}  // namespace gantry::simulator
