#pragma once

#include <string_view>
#include <vector>

#include "client/message_stream.h"
#include "client/name_index.h"
#include "simulator_side/controlled_simulator.h"

namespace gantry::simulator {

/// The simulator's side of one session with an external controller: takes the set-up, then serves
/// one message after another until the controller shuts the run down. docs/wire-protocol.md shows
/// the messages.
///
/// A message that can't be read or obeyed ends the session. The controller is then answered by a
/// marker that holds the reason, which its reader shows as the wrong header that it is.
class ControllerSession {
 public:
  /// Both must outlive the session.
  ControllerSession(ControlledSimulator& simulator, ByteChannel& channel);

  /// Returns after a shutdown. Throws system_error when the controller has gone, and what the
  /// codec or the simulator threw at the message that ended the session.
  void Run();

 private:
  struct Operation {
    std::string_view verb;  ///< the message's first marker
    std::string_view name;  ///< its second one; empty where there is none
    void (ControllerSession::*serve)(IncomingMessage&);
  };
  static const std::vector<Operation> kOperations;

  void Serve(IncomingMessage& message);
  void Refuse(std::string_view reason);

  // Session and run control.
  void SetUp();
  std::string ReadSetUp();  ///< what is wrong with it; empty when all is well
  void Continue(IncomingMessage& message);
  void ContinueUntil(IncomingMessage& message);
  void Shutdown(IncomingMessage& message);
  void SendPosition();
  void SendReady() { stream_.Send(ready_); }

  // Queries.
  void QueryWells(IncomingMessage& message);
  void QueryWellTexts(IncomingMessage& message);
  void QueryReservoir(IncomingMessage& message);
  void QueryReservoirTexts(IncomingMessage& message);
  void QueryConstraints(IncomingMessage& message);
  void QueryInflow(IncomingMessage& message);
  void QueryFluidModel(IncomingMessage& message);
  void QueryReservoirFluids(IncomingMessage& message);

  // Setters.
  void SetConstraints(IncomingMessage& message);
  void SetStatus(IncomingMessage& message);
  void SetWells(IncomingMessage& message);
  void CreateFluidSource(IncomingMessage& message);
  void SetFluidSource(IncomingMessage& message);

  /// Answers for some items of some wells, as `find` and `valueOf` tell them.
  template <class Value, class Find, class ValueOf>
  void AnswerWells(IncomingMessage& message, Find find, ValueOf valueOf);
  /// Positions of the wells that are known; the one name "*" stands for all.
  std::vector<size_t> KnownWells(const Strings& names) const;
  size_t WellNamed(const std::string& name) const;
  OutgoingMessage StartReply();
  void FinishReply(OutgoingMessage& reply);

  ControlledSimulator& simulator_;
  ByteChannel& channel_;
  MessageStream stream_;
  EncodedMessage ready_;
  NameIndex wells_;
  bool running_ = true;
};

/// Takes the end of a request that has been read.
void FinishRequest(IncomingMessage& message);

/// Answers the set-up of a controller whose run can't begin with the reason, as its reader shows
/// it; the session is over then.
void RefuseController(ByteChannel& channel, const std::string& reason);

}  // namespace gantry::simulator
