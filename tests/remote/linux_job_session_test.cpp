#include "sessions/linux_job_session.h"

#include <algorithm>
#include <cctype>

#include <gtest/gtest.h>

#include "platform/user.h"
#include "remote/passing_calls.h"
#include "remote/wire_bytes.h"
#include "settings/link_settings.h"
#include "support/isolation.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

std::string UserInLowerCase() {
  std::string name = platform::LogInName().value_or("");
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char character) { return std::tolower(character); });
  return name;
}

LinkSettings SettingsFor(const ScriptedPeer& peer) {
  LinkSettings settings;
  settings.HeadNode = "127.0.0.1";
  settings.HeadNodePort = peer.Port();
  settings.FileName = "/fields/north/NORTH.v2.afi";
  settings.Parallel = 4;
  settings.LinuxIXVersion = 20172;
  settings.StdLogging = true;
  return settings;
}

/// The factory up to its answer.
ScriptedPeer& Hear(ScriptedPeer& peer, const std::string& scenario = "0",
                   const std::string& logging = "1") {
  return peer.ReplyBytes(Framed("3"))
      .ExpectBytes(Framed("1") + Framed(scenario) + Framed("/fields/north/") + Framed("NORTH.v2") +
                   Framed("4") + Framed("20172") + Framed(UserInLowerCase()) + Framed(logging));
}

void PlaySession(ScriptedPeer& peer) {
  peer.ExpectBytes(BareRequest(1)).ReplyBytes(Message(1, kAccepted));
  peer.ExpectBytes(BareRequest(17)).ReplyBytes(Message(17, Double(2017.2) + kAccepted));
  peer.ExpectBytes(BareRequest(3)).ReplyBytes(Message(3, Int(1) + kAccepted));
  peer.ExpectBytes(BareRequest(4)).ReplyBytes(Message(4, Double(12.5) + kAccepted));
  peer.ExpectBytes(BareRequest(65520)).ReplyBytes(Message(65520, kAccepted));
}

TEST(LinuxJobSession, HandsTheDialoguesConnectionToTheConnector) {
  for (const char* answer : {"OK|node017", "OK|node017\n", "|OK| \t|node017"}) {
    ScriptedPeer peer;
    Hear(peer).ReplyBytes(Framed(answer));
    PlaySession(peer);
    peer.Start();
    const LinkSettings settings = SettingsFor(peer);
    CLinuxJobSession session(settings);
    EXPECT_FALSE(session.IsRunning());
    EXPECT_EQ(session.GetHostDescription(), "");
    std::string message;
    ASSERT_EQ(session.Start(message), 0) << message;
    EXPECT_TRUE(session.IsRunning());
    EXPECT_EQ(session.GetHostDescription(), "node017");
    EXPECT_EQ(session.Connector->GetTimeDays(), 12.5);
    EXPECT_EQ(session.Start(message), 1);
    EXPECT_EQ(message,
              "The current simulator process is still running. No new process is created.");
  }
}

/// The failure of a session's start with the peer's script; the session must not run then.
std::string StartFailure(const ScriptedPeer& peer, bool logs = true) {
  LinkSettings settings = SettingsFor(peer);
  settings.StdLogging = logs;
  CLinuxJobSession session(settings);
  std::string message;
  EXPECT_EQ(session.Start(message), 1);
  EXPECT_FALSE(session.IsRunning());
  return message;
}

TEST(LinuxJobSession, TellsTheBatchScenario) {
  const ScopedVariable job("LSB_JOBID", "77");
  const ScopedVariable scenario("LSF_TESSEL_SCENARIO", "4");
  ScriptedPeer peer;
  Hear(peer, "5", "0").ReplyBytes(Framed("no")).Start();
  EXPECT_EQ(StartFailure(peer, false), "no");
}

TEST(LinuxJobSession, ShowsWhatTheFactoryAnswers) {
  const std::pair<std::string, std::string> answers[] = {
      {Framed("OK"), "OK"},
      {Framed("OK|a|b"), "OK|a|b"},
      {Framed("ok|node017"), "ok|node017"},
      {Framed("No licence today"), "No licence today"},
      {Framed(" | \n "), "Invalid response from simulator"},
      {Framed(""), "Error connecting to run factory on host 127.0.0.1 (2)"},
      {"", "Error connecting to run factory on host 127.0.0.1 (2)"},
      {Framed("OK|node017") + Message(1, kRefused),
       "Abnormal error: Unexpected acknowledgement from Intersect controller"},
  };
  for (const auto& [answer, text] : answers) {
    ScriptedPeer peer;
    Hear(peer).ReplyBytes(answer);
    if (text.starts_with("Abnormal")) peer.ExpectBytes(BareRequest(1));
    peer.Start();
    EXPECT_EQ(StartFailure(peer), text);
  }
}

TEST(LinuxJobSession, DeclinesAFactoryOfAnotherVersionOrOfNone) {
  for (const auto& [version, found] :
       {std::pair{"2", "(2 - expected = 3)"}, {"three", "(0 - expected = 3)"}}) {
    ScriptedPeer peer;
    peer.ReplyBytes(Framed(version)).ExpectBytes(Framed("0")).Start();
    EXPECT_EQ(StartFailure(peer),
              std::string("Linux side executables are of a different version to KINSET ") + found);
  }
  ScriptedPeer silent;
  silent.Start();
  EXPECT_EQ(StartFailure(silent),
            "Error connecting to run factory on host 127.0.0.1. Version number not returned");
}

TEST(LinuxJobSession, SaysThatNobodyListensAndNamesAnIntegerThatIsThrown) {
  LinkSettings settings;
  settings.HeadNode = "127.0.0.1";
  settings.HeadNodePort = 1;
  const std::string nobody =
      "Error connecting to run factory on host 127.0.0.1, port 1. Is it running?";
  std::string message;
  EXPECT_EQ(CLinuxJobSession(settings).Start(message), 1);
  EXPECT_EQ(message, nobody);
  PassingCalls calls;
  calls.findHost = [](const std::string&) -> std::optional<uint32_t> { throw 10061; };
  EXPECT_EQ(CLinuxJobSession(settings).Start(message), 1);
  EXPECT_EQ(message, nobody + " Error number: 10061");
}

}  // namespace
}  // namespace gantry::test
