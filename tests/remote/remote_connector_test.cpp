#include "remote/remote_connector.h"

#include <gtest/gtest.h>

#include "remote/routine_table.h"
#include "remote/socket.h"
#include "remote/wire_script.h"
#include "support/connector_talk.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

/// A controller of a simulator in field units that plays its script once a session stands.
struct Controller {
  Controller() {
    Script(peer, {">> 1 1", "<< 1 0", ">> 17 17", "<< 17 2017.2 0", ">> 3 3", "<< 3 0 0"});
  }

  std::unique_ptr<CExtConnectorBase> Connect(int32_t versionCode = kMostRecentVersion) {
    peer.Start();
    const SocketClient socket("127.0.0.1", peer.Port());
    RemoteSessionData data;
    data.VersionCode = versionCode;
    data.Socket = &socket;
    return CreateRemoteConnector(data);
  }

  ScriptedPeer peer;
};

void PlayWithController(const Talk& talk) {
  Controller controller;
  for (const Turn& turn : talk.turns) Script(controller.peer, turn.wire);
  const size_t code = talk.name.find(' ');
  const auto connector = controller.Connect(
      code == std::string::npos ? kMostRecentVersion : std::stoi(talk.name.substr(code)));
  Play(talk, [&](const Turn& turn, Texts& told) { Ask(*connector, Parse(turn.call), told); });
}

/// A routine that fails: by its acknowledgement, by a reply of another routine, and by an empty
/// one.
Talk Failing(const Talk& talk) {
  const Turn& turn = talk.turns.front();
  const std::string &request = turn.wire[0], &reply = turn.wire[1];
  const auto routine = Routine{static_cast<uint32_t>(std::stoul(reply.substr(3)))};
  const std::string broken = "runtime_error: " + CommunicationError(routine);
  const std::string refused = "runtime_error: " + AcknowledgementError(routine);
  return {talk.name,
          {{turn.call, {refused}, {request, reply.substr(0, reply.size() - 1) + "1"}},
           {turn.call, {broken}, {request, "<< 99" + reply.substr(reply.find(' ', 3))}},
           {turn.call, {broken}, {request, "<<"}}}};
}

TEST(RemoteConnector, SaysAndHearsEachRoutineToTheByteAndNamesItWhereItFails) {
  for (const Talk& talk : TalksIn("remote/routines.talk")) {
    PlayWithController(talk);
    PlayWithController(Failing(talk));
  }
  EXPECT_EQ(AcknowledgementError(Routine::kGetDate),
            "Unexpected acknowledgement from Intersect controller (Routine: IX_GETDATE).");
}

TEST(RemoteConnector, TakesRepliesAsTheyAreWritten) {
  for (const Talk& talk : TalksIn("remote/replies.talk")) PlayWithController(talk);
}

TEST(RemoteConnector, WaitsForNothingOnceAReplyWasLongerThanItsBuffer) {
  Controller controller;
  Script(controller.peer, {">> 4 4"});
  controller.peer.ReplyBytes(Text(Int(4) + std::string(1048572, '\0')));
  Script(controller.peer, {">> 4 4"});
  controller.peer.ReplyBytes(Int(1048577) + Int(100));
  Script(controller.peer, {">> 7 7", ">> 65520 65520"});
  const auto connector = controller.Connect();
  EXPECT_EQ(connector->GetTimeDays(), 0.0);
  const std::string broken = "runtime_error: " + CommunicationError(Routine::kGetTimeDays);
  EXPECT_EQ(Raised([&] { connector->GetTimeDays(); }), broken);
  EXPECT_NE(Raised([&] { connector->AdvanceNewton(); }), "nothing raised");
  EXPECT_NE(Raised([&] { connector->Shutdown(); }), "nothing raised");
}

}  // namespace
}  // namespace gantry::test
