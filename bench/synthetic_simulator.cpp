#include "synthetic_simulator.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "boundary/error_text.h"

namespace gantry::bench {
namespace {

constexpr double kHighestRate = 5000.0;

const char* TypeOf(int well, ModelSize size) {
  if (size.components > 0 && well % 100 == 99) return "GAS_INJECTOR";
  return well % 10 < 8 ? "PRODUCER" : "WATER_INJECTOR";
}

void SendReady(MessageStream& stream) {
  stream.CreateOutgoingMessage().AppendMarker("READY").AppendMarker("END").Send();
}

void SkipEntry(IncomingMessage& message, const Header& header) {
  if (header.type == HeaderType::DOUB) message.ReadDoubles(header);
  if (header.type == HeaderType::INTE) message.ReadInts(header);
  if (header.type == HeaderType::CSTR) message.ReadStrings(header);
}

void SkipToEnd(IncomingMessage& message) {
  for (Header header = message.ReadHeader(); header.name != "END"; header = message.ReadHeader())
    SkipEntry(message, header);
  message.EndOfMessage();
}

/// The wells and items of a query; "*" stands for all wells.
struct Asked {
  std::vector<std::string> items;
  std::vector<std::string> wells;
};

Asked ReadQuery(IncomingMessage& message) {
  Asked asked;
  asked.items = message.ReadStrings("QITEMS");
  asked.wells = message.ReadStrings("WELNAMES");
  SkipToEnd(message);
  return asked;
}

}  // namespace

const std::map<std::string, SyntheticSimulator::Answer, std::less<>> SyntheticSimulator::kAnswers =
    {
        {"SETUP", &SyntheticSimulator::Setup},
        {"CONTINUE", &SyntheticSimulator::Continue},
        {"CONTINUE_UNTIL", &SyntheticSimulator::ContinueUntil},
        {"QWELLS", &SyntheticSimulator::QueryWells},
        {"QWELLS_STR", &SyntheticSimulator::QueryWellWords},
        {"QRESVR", &SyntheticSimulator::QueryReservoir},
        {"QRESVR_STR", &SyntheticSimulator::QueryReservoirWords},
        {"QRFLUIDMODEL", &SyntheticSimulator::QueryFluid},
        {"SETWCONSTRAINTS", &SyntheticSimulator::SetConstraints},
        {"CREATE_FLDSRCEXT", &SyntheticSimulator::CreateSource},
        {"SETWSTATUS", &SyntheticSimulator::AcceptSetter},
        {"SETWELLS", &SyntheticSimulator::AcceptSetter},
        {"SETWSTRE", &SyntheticSimulator::AcceptSetter},
        {"SHUTDOWN", &SyntheticSimulator::Shutdown},
};

SyntheticSimulator::SyntheticSimulator(ModelSize size) : size_(size) {
  for (int i = 0; i < size.wells; ++i) {
    wells_.push_back({FormatText("WELL-%05d", i + 1), TypeOf(i, size), kHighestRate});
    positions_.emplace(wells_.back().name, wells_.size() - 1);
  }
}

std::string SyntheticSimulator::AnswerOne(MessageStream& stream) {
  IncomingMessage message = stream.ReceiveMessage();
  std::string word(message.ReadHeader().name);
  if (word == "QUERY" || word == "SET") word = message.ReadHeader().name;
  const auto found = kAnswers.find(word);
  if (found == kAnswers.end()) throw std::runtime_error("unexpected message " + word);
  (this->*found->second)(stream, message);
  return word;
}

void SyntheticSimulator::Setup(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  stream.CreateOutgoingMessage()
      .AppendMarker("STARTED")
      .AppendStrings("ERRORS", {})
      .AppendMarker("END")
      .Send();
  SendStep(stream, "MODEL_DEFINITION");
}

void SyntheticSimulator::SendStep(MessageStream& stream, const char* position) const {
  constexpr std::array<int32_t, 6> kDate = {2020, 1, 1, 0, 0, 0};
  stream.CreateOutgoingMessage()
      .AppendMarker("STEP")
      .AppendString("POSITION", position)
      .AppendDouble("TIME", time_)
      .AppendInts("DATE", kDate)
      .AppendMarker("END")
      .Send();
}

void SyntheticSimulator::Continue(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  SendStep(stream, "BEGIN_NEWTON");
}

void SyntheticSimulator::ContinueUntil(MessageStream& stream, IncomingMessage& message) {
  time_ = message.ReadDoubles("TIME", 1).front();
  SkipToEnd(message);
  SendStep(stream, "BEGIN_NEWTON");
}

void SyntheticSimulator::Shutdown(MessageStream& /*stream*/, IncomingMessage& message) {
  SkipToEnd(message);
}

double SyntheticSimulator::ValueOf(const std::string& item, size_t well) const {
  const double rate = std::min(wells_[well].rate, kHighestRate);
  if (item.ends_with("PRESSURE")) return 3000.0 - 0.2 * rate;
  if (item.ends_with("_RATE")) return item.starts_with("GAS") ? rate * 1000.0 : rate * 0.5;
  if (item.ends_with("_DENSITY")) return item.starts_with("GAS") ? 0.06 : 50.0;
  if (item.starts_with("TOTAL_MOLE_FRACTION")) return 1.0 / size_.components;
  return item == "TEMPERATURE" ? 200.0 : 1.0;
}

std::string SyntheticSimulator::WordOf(const std::string& item, size_t well) const {
  return item == "TYPE" ? wells_[well].type : "OPEN";
}

void SyntheticSimulator::QueryWells(MessageStream& stream, IncomingMessage& message) {
  const Asked asked = ReadQuery(message);
  OutgoingMessage reply = stream.CreateOutgoingMessage();
  reply.AppendMarker("REPLY").AppendStrings("QITEMS", asked.items);
  std::vector<double> values;
  for (const std::string& name : asked.wells) {
    values.clear();
    for (const std::string& item : asked.items)
      values.push_back(ValueOf(item, positions_.at(name)));
    reply.AppendString("WELLNAME", name).AppendDoubles("VALUES", values);
  }
  reply.AppendMarker("END").Send();
  SendReady(stream);
}

void SyntheticSimulator::QueryWellWords(MessageStream& stream, IncomingMessage& message) {
  Asked asked = ReadQuery(message);
  if (asked.wells == std::vector<std::string>{"*"}) {
    asked.wells.clear();
    for (const Well& well : wells_) asked.wells.push_back(well.name);
  }
  OutgoingMessage reply = stream.CreateOutgoingMessage();
  reply.AppendMarker("REPLY").AppendStrings("QITEMS", asked.items);
  std::vector<std::string> values;
  for (const std::string& name : asked.wells) {
    values.clear();
    for (const std::string& item : asked.items) values.push_back(WordOf(item, positions_.at(name)));
    reply.AppendString("WELLNAME", name).AppendStrings("VALUES", values);
  }
  reply.AppendMarker("END").Send();
  SendReady(stream);
}

void SyntheticSimulator::QueryReservoir(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  constexpr std::array<int32_t, 6> kStart = {2020, 1, 1, 0, 0, 0};
  stream.CreateOutgoingMessage()
      .AppendMarker("REPLY")
      .AppendString("QITEM", "START_DATE")
      .AppendInts("VALUES", kStart)
      .AppendMarker("END")
      .Send();
  SendReady(stream);
}

void SyntheticSimulator::QueryReservoirWords(MessageStream& stream, IncomingMessage& message) {
  const std::map<std::string, std::string> words = {
      {"IX_VERSION", "2020.1"},
      {"UNIT_SYSTEM", "ECLIPSE_FIELD"},
      {"FM_FLUID_MODEL", size_.components > 0 ? "COMPOSITIONAL" : "BLACK_OIL"},
      {"RES_FLUID_MODEL", "RES"}};
  const std::vector<std::string> items = message.ReadStrings("QITEMS");
  SkipToEnd(message);
  OutgoingMessage reply = stream.CreateOutgoingMessage();
  reply.AppendMarker("REPLY");
  for (const std::string& item : items)
    reply.AppendString("QITEM", item).AppendString("VALUES", words.at(item));
  reply.AppendMarker("END").Send();
  SendReady(stream);
}

void SyntheticSimulator::QueryFluid(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  const auto count = static_cast<size_t>(size_.components);
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) names.push_back("C" + std::to_string(i + 1));
  const std::vector<double> column(count, 100.0);
  const std::vector<double> interaction(count * (count - 1) / 2, 0.01);
  stream.CreateOutgoingMessage()
      .AppendMarker("REPLY")
      .AppendString("FLUIDMODELDNAME", "FLUID")
      .AppendString("EOSNAME", "PENG_ROBINSON")
      .AppendStrings("NCOMPS", names)
      .AppendDoubles("BIC", interaction)
      .AppendString("EOSPROPNAME", "TCrit")
      .AppendDoubles("VALUES", column)
      .AppendMarker("END")
      .Send();
  SendReady(stream);
}

void SyntheticSimulator::SetConstraints(MessageStream& stream, IncomingMessage& message) {
  for (Header header = message.ReadHeader(); header.name != "END"; header = message.ReadHeader()) {
    const size_t well = positions_.at(message.ReadStrings(header).front());
    message.ReadStrings("ITEMS");
    wells_[well].rate = message.ReadDoubles("VALUES").front();
    message.ReadStrings("SETTERS");
  }
  message.EndOfMessage();
  SendReady(stream);
}

void SyntheticSimulator::CreateSource(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  stream.CreateOutgoingMessage()
      .AppendMarker("REPLY")
      .AppendInt("STRET", 1)
      .AppendMarker("END")
      .Send();
  SendReady(stream);
}

void SyntheticSimulator::AcceptSetter(MessageStream& stream, IncomingMessage& message) {
  SkipToEnd(message);
  SendReady(stream);
}

}  // namespace gantry::bench
