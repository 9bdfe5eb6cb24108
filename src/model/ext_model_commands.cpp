// The text interface: properties by path, commands, the description for the host's display, and the
// published variables.

#include <algorithm>
#include <cstring>

#include "model/ext_model.h"
#include "model/model_failure.h"
#include "text/tag_parser.h"

namespace gantry {
namespace {

constexpr std::string_view kPrefix = "Intersect";
constexpr std::string_view kLiveWells = "Well";

}  // namespace

// Nothing here but the running test waits for a step that another thread has under way.
bool CExtModel::ReadOwnWord(TagParser& parser) {
  if (parser.MatchWord("IsRunning")) {
    parser.WriteReply(IsRunning() ? 1 : 0);
    return true;
  }
  return parser.BoolProperty(field_.Compositional, "Compositional") ||
         parser.DoubleProperty(run_.CurrentElapsedDays, "CurrentElapsedDays");
}

// What the records hold is answered without the lock; it is taken only to ask the simulator.
bool CExtModel::HandlePath(TagParser& parser) {
  if (case_.Settings.Handle(parser, nullptr) || case_.Wells.Handle(parser, false, nullptr, {})) {
    return true;
  }
  if (!run_.HasSession()) return false;
  const TagParser whole = parser;
  if (field_.Sources.Handle(parser, false, nullptr, kLiveWells)) return true;
  if (!parser.NeedsSimulator) return false;
  parser = whole;
  const platform::SingleLock lock(run_.Lock);
  return field_.Sources.Handle(parser, false, run_.Connector(), kLiveWells);
}

int32_t CExtModel::GetProperty(GetPropertyRequest* request, ExtErrorBlock* err) {
  if (request->path == nullptr) return 1;
  TagParser parser = TagParser::ForReading(request->path, request->value);
  if (!parser.MatchWord(kPrefix)) return 1;
  const bool handled = ReadOwnWord(parser) || HandlePath(parser);
  if (!parser.ErrorText.empty()) return Fail(err, parser.ErrorText);
  return handled ? 0 : 1;
}

int32_t CExtModel::SetProperty(const SetPropertyRequest* request, ExtErrorBlock* err) {
  if (request->path == nullptr || request->value == nullptr) return 1;
  TagParser parser = TagParser::ForWriting(request->path, request->value);
  if (!parser.MatchWord(kPrefix)) return 1;
  const bool handled = HandlePath(parser);
  if (!parser.ErrorText.empty()) return Fail(err, parser.ErrorText);
  return handled ? 0 : 1;
}

// The operations behind a command report by their text, and the text decides.
int32_t CExtModel::DoCommand(const char* text, ExtErrorBlock* err) {
  ExtErrorBlock ownBlock = {};
  ExtErrorBlock& block = err == nullptr ? ownBlock : *err;
  RunCommandText(text, block);
  return block.text[0] == '\0' ? 0 : 1;
}

void CExtModel::RunCommandText(const char* text, ExtErrorBlock& err) {
  struct Command {
    const char* word;
    int32_t argumentCount;
    void (CExtModel::*run)(const CommandValues& arguments, ExtErrorBlock& err);
  };
  static constexpr Command kCommands[] = {{"StartIX", 0, &CExtModel::StartByCommand},
                                          {"StopIX", 0, &CExtModel::StopByCommand},
                                          {"RunToTime", 1, &CExtModel::RunToTime}};
  TagParser parser = TagParser::ForCommand(text);
  if (!parser.MatchWord(kPrefix)) return SetErrorText(&err, "Invalid prefix");
  CommandValues arguments;
  for (const auto& [word, count, run] : kCommands) {
    const CommandMatch match = parser.MatchCommand(word, arguments, count, count);
    if (match == CommandMatch::kMatched) return (this->*run)(arguments, err);
    if (match == CommandMatch::kMalformed) break;
  }
  SetErrorText(&err, parser.ErrorText);
}

void CExtModel::StartByCommand(const CommandValues& /*arguments*/, ExtErrorBlock& err) {
  if (IsRunning()) return SetErrorText(&err, "Intersect is already running");
  skipNextStart_ = false;
  if (StartSimulator(nullptr, &err) == 0) ReadWells(false, &err);
}

void CExtModel::StopByCommand(const CommandValues& /*arguments*/, ExtErrorBlock& err) {
  if (!IsRunning()) return SetErrorText(&err, "Intersect is already not running");
  CloseSimulator();
}

void CExtModel::RunToTime(const CommandValues& arguments, ExtErrorBlock& err) {
  opPointsApplied_ = true;  // no orders go out; this stays so when the time has passed
  const double step = arguments[0].NumberValue - run_.CurrentElapsedDays;
  if (step <= 0.0) {
    return SetErrorText(&err, "RunToTime called for a time which has already passed");
  }
  if (StepBy(step, &err) == 0) ReadWells(false, &err);
}

int32_t CExtModel::GetDescription(char* buffer, uint32_t length, ExtErrorBlock* /*err*/) {
  std::string text = "<No file>";
  if (!case_.Settings.FileName.empty()) {
    const auto host = run_.HostDescription();
    text =
        case_.Settings.FileName + (host ? "\nRunning on: " + *host : "\n<Not currently running>");
  }
  std::memcpy(buffer, text.data(), std::min<size_t>(text.size(), length));
  if (text.size() < length) buffer[text.size()] = '\0';
  return 0;
}

int32_t CExtModel::EvalPublishedVariables(EvalPublishedRequest* request, ExtErrorBlock* err) {
  const platform::SingleLock lock(run_.Lock);
  if (!IsRunning()) return 0;
  const auto notify = [this](const std::string& notice) {
    TellHost(notice, hostLog_);
    TellHost(notice, hostStatus_);
  };
  return published_.Evaluate(*request, field_.FluidModel.componentNames.size(), *run_.Connector(),
                             case_.Wells, notify, err);
}

void CExtModel::TellHost(const std::string& text, HostTextCallback callback) {
  if (callback != nullptr) callback(text.c_str(), static_cast<CExtInterface*>(this));
}

}  // namespace gantry
