#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/v2017_2/intersect_client.h"
#include "fieldrun/peer_check/limited_connection.h"
#include "fieldrun/platform/held_program.h"

namespace gantry::fieldrun {

/// The simulator that is on trial, and how it is started.
struct PeerSetting {
  std::string program;
  std::string deck;                    ///< starts BASE in its folder
  std::vector<std::string> arguments;  ///< behind those that a driver gives
  std::string log;                     ///< the file that takes what it says
  std::chrono::seconds limit{60};      ///< of each wait for it
  int stepDays = 2;                    ///< of the step that is tried
};

/// How far a session has come.
enum class Stand { kNothing, kConnected, kModelDefinition, kBeginNewton, kOver };

/// One well, as the simulator names it.
struct PeerWell {
  std::string name;
  std::string type;
};

/// What the simulator has told of its model, which is the same in each session.
struct PeerModel {
  double version = 0.0;
  bool isMetric = false;
  bool isCompositional = false;
  std::vector<PeerWell> wells;

  Strings WellNames() const;
};

/// One run of the simulator with this program as its controller. Nothing that happens here outlives
/// the object. Throws what connection, codec and client throw.
class CheckedSession {
 public:
  CheckedSession(const PeerSetting& setting, PeerModel& model);

  /// Starts the simulator and knocks until it listens.
  void Start();
  /// Takes a session forward to where a rule needs it; no rule asks for what lies behind.
  void BringTo(Stand stand);
  Stand stand() const { return stand_; }
  /// It serves no further rule.
  void SetOver() { stand_ = Stand::kOver; }

  v2017_2::IntersectClient& Client() { return *client_; }
  LimitedConnection& Wire() { return *wire_; }
  PeerModel& Model() { return model_; }
  int StepDays() const { return setting_.stepDays; }

  /// Leaves the simulator alone, without a word.
  void HangUp();
  /// How it ended; throws NoAnswer when it still lives after the limit.
  HeldEnd AwaitEnd();
  /// The last line that it has said; empty when it has said nothing.
  std::string LastWords() const;
  std::string ShowReceived() const { return wire_->ShowReceived(); }

 private:
  const PeerSetting& setting_;
  PeerModel& model_;
  std::unique_ptr<HeldProgram> program_;
  std::optional<v2017_2::IntersectClient> client_;
  LimitedConnection* wire_ = nullptr;  ///< of the client
  uint16_t port_ = 0;
  Stand stand_ = Stand::kNothing;
};

}  // namespace gantry::fieldrun
