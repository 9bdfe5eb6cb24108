#include "fieldrun/peer_check/checked_session.h"

#include <filesystem>
#include <fstream>

#include <fmt/format.h>

#include "client/tcp_connection.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

constexpr std::chrono::milliseconds kKnockInterval{20};

/// A port that nobody has at the moment.
uint16_t FreePort() { return TcpListener(0).Port(); }

HeldStart StartOf(const PeerSetting& setting, uint16_t port) {
  const std::filesystem::path deck = platform::PathOf(setting.deck);
  HeldStart start{setting.program, {}, platform::NameOf(deck.parent_path()), setting.log};
  start.arguments = {platform::NameOf(deck.stem()),
                     fmt::format("--dopt=external_controller_port:{}", port)};
  start.arguments.insert(start.arguments.end(), setting.arguments.begin(), setting.arguments.end());
  return start;
}

}  // namespace

Strings PeerModel::WellNames() const {
  Strings names;
  for (const PeerWell& well : wells) names.push_back(well.name);
  return names;
}

CheckedSession::CheckedSession(const PeerSetting& setting, PeerModel& model)
    : setting_(setting), model_(model) {
  auto wire = std::make_unique<LimitedConnection>(setting.limit);
  wire_ = wire.get();
  client_.emplace(std::move(wire));
}

void CheckedSession::Start() {
  port_ = FreePort();
  program_ = HeldProgram::Start(StartOf(setting_, port_));
  const auto limit = std::chrono::steady_clock::now() + setting_.limit;
  while (!wire_->Knock(port_)) {
    if (const auto end = program_->WaitForEnd(kKnockInterval)) {
      throw PeerGone(fmt::format("it ended {} before it listened", end->how));
    }
    if (std::chrono::steady_clock::now() > limit) {
      throw NoAnswer(
          fmt::format("nobody has listened on the port within {} s (--limit waits longer)",
                      setting_.limit.count()));
    }
  }
  stand_ = Stand::kConnected;
}

void CheckedSession::BringTo(Stand stand) {
  if (stand_ == Stand::kNothing && stand > Stand::kNothing) Start();
  if (stand_ == Stand::kConnected && stand > Stand::kConnected) {
    client_->connect("127.0.0.1", port_, 0);
    stand_ = Stand::kModelDefinition;
  }
  if (stand_ == Stand::kModelDefinition && stand > Stand::kModelDefinition) {
    client_->continue_simulation();
    stand_ = Stand::kBeginNewton;
  }
}

void CheckedSession::HangUp() { wire_->Close(); }

HeldEnd CheckedSession::AwaitEnd() {
  if (const auto end = program_->WaitForEnd(setting_.limit)) return *end;
  throw NoAnswer(
      fmt::format("it still runs after {} s (--limit waits longer)", setting_.limit.count()));
}

std::string CheckedSession::LastWords() const {
  std::ifstream log(platform::PathOf(setting_.log));
  std::string last;
  for (std::string line; std::getline(log, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) last = line;
  }
  return last;
}

}  // namespace gantry::fieldrun
