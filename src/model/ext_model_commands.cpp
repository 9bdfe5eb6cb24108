// The text interface: properties by path, commands, and the description for the host's display.

#include <algorithm>
#include <cstring>

#include "equipment/equipment_model.h"
#include "model/ext_model.h"
#include "model/model_failure.h"
#include "text/tag_parser.h"

namespace gantry {
namespace {

constexpr std::string_view kPrefix = "Intersect";
constexpr std::string_view kLiveWells = "Well";

/// A command of the text interface, by the arguments that it takes.
struct CommandWord {
  const char* word;
  int32_t argumentCount;
};

constexpr CommandWord kStart = {"StartIX", 0};
constexpr CommandWord kStop = {"StopIX", 0};
constexpr CommandWord kRunToTime = {"RunToTime", 1};

CommandMatch Match(TagParser& parser, const CommandWord& command,
                   CExtDataServerCmdArgumentCollection& arguments) {
  return parser.MatchCommand(command.word, arguments, command.argumentCount, command.argumentCount);
}

}  // namespace

// Nothing here but the running test waits for a step that another thread has under way.
bool CExtModel::ReadOwnWord(TagParser& parser) {
  if (parser.MatchWord("IsRunning")) {
    parser.WriteReply(IsRunning() ? 1 : 0);
    return true;
  }
  return parser.BoolProperty(Compositional, "Compositional") ||
         parser.DoubleProperty(CurrentElapsedDays, "CurrentElapsedDays");
}

// What the records hold is answered without the lock; it is taken only to ask the simulator.
bool CExtModel::HandlePath(TagParser& parser) {
  if (Settings.Handle(parser, nullptr) || Wells.Handle(parser, false, nullptr, {})) return true;
  if (!hasSession_) return false;
  const TagParser whole = parser;
  if (Sources.Handle(parser, false, nullptr, kLiveWells)) return true;
  if (!parser.NeedsSimulator) return false;
  parser = whole;
  const platform::SingleLock lock(Lock);
  return Session != nullptr && Sources.Handle(parser, false, Session->Connector.get(), kLiveWells);
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
  TagParser parser = TagParser::ForCommand(text);
  CExtDataServerCmdArgumentCollection arguments;
  const auto runs = [&](const CommandWord& command) {
    return Match(parser, command, arguments) == CommandMatch::kMatched;
  };
  if (!parser.MatchWord(kPrefix)) return SetErrorText(&err, "Invalid prefix");
  if (runs(kStart)) return StartByCommand(err);
  if (parser.ErrorText.empty() && runs(kStop)) return StopByCommand(err);
  if (parser.ErrorText.empty() && runs(kRunToTime)) {
    return RunToTime(arguments[0].NumberValue, err);
  }
  SetErrorText(&err, parser.ErrorText);
}

void CExtModel::StartByCommand(ExtErrorBlock& err) {
  if (IsRunning()) return SetErrorText(&err, "Intersect is already running");
  SkipNextStart = false;
  if (StartSimulator(nullptr, &err) == 0) ReadWells(false, &err);
}

void CExtModel::StopByCommand(ExtErrorBlock& err) {
  if (!IsRunning()) return SetErrorText(&err, "Intersect is already not running");
  CloseSimulator();
}

void CExtModel::RunToTime(double target, ExtErrorBlock& err) {
  OpPointsApplied = true;  // no orders go out; this stays so when the time has passed
  const double step = target - CurrentElapsedDays;
  if (step <= 0.0) {
    return SetErrorText(&err, "RunToTime called for a time which has already passed");
  }
  if (StepBy(step, &err) == 0) ReadWells(false, &err);
}

int32_t CExtModel::GetDescription(char* buffer, uint32_t length, ExtErrorBlock* /*err*/) {
  std::string text = "<No file>";
  if (!Settings.FileName.empty()) {
    const platform::SingleLock lock(Lock);
    text = Settings.FileName;
    text += IsRunning() ? "\nRunning on: " + Session->GetHostDescription()
                        : std::string("\n<Not currently running>");
  }
  std::memcpy(buffer, text.data(), std::min<size_t>(text.size(), length));
  if (text.size() < length) buffer[text.size()] = '\0';
  return 0;
}

int32_t CExtModel::GetEquipmentXml(EquipmentModel& equipment, bool withoutVariables,
                                   const std::vector<std::string>& names) {
  FillEquipment(equipment, Settings, InstanceLabel, Wells, withoutVariables, names);
  return 0;
}

}  // namespace gantry
