#include "sessions/linux_job_session.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <gtest/gtest.h>

#include "platform/user.h"
#include "remote/passing_calls.h"
#include "remote/wire_script.h"
#include "settings/link_settings.h"
#include "support/isolation.h"

namespace gantry::test {
namespace {

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

/// The factory up to its answer, for a scenario and its logging.
ScriptedPeer& Hear(ScriptedPeer& peer, const std::string& scenario = "0",
                   const std::string& logging = "1") {
  const std::string user = boost::to_lower_copy(platform::LogInName().value_or(""));
  return peer.ReplyBytes(Elements("'3'"))
      .ExpectBytes(Elements("'1' '" + scenario + "' '/fields/north/' 'NORTH.v2' '4' '20172' '" +
                            user + "' '" + logging + "'"));
}

TEST(LinuxJobSession, HandsTheDialoguesConnectionToTheConnector) {
  for (const char* answer : {"OK|node017", "OK|node017\n", "|OK| \t|node017"}) {
    ScriptedPeer peer;
    Hear(peer).ReplyBytes(Text(answer));
    Script(peer, {">> 1 1", "<< 1 0", ">> 17 17", "<< 17 2017.2 0", ">> 3 3", "<< 3 1 0", ">> 4 4",
                  "<< 4 12.5 0", ">> 65520 65520", "<< 65520 0"});
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
  Hear(peer, "5", "0").ReplyBytes(Text("no")).Start();
  EXPECT_EQ(StartFailure(peer, false), "no");
}

TEST(LinuxJobSession, ShowsWhatTheFactoryAnswers) {
  const std::pair<std::string, std::string> answers[] = {
      {Text("OK"), "OK"},
      {Text("OK|a|b"), "OK|a|b"},
      {Text("ok|node017"), "ok|node017"},
      {Text("No licence today"), "No licence today"},
      {Text(" | \n "), "Invalid response from simulator"},
      {Text(""), "Error connecting to run factory on host 127.0.0.1 (2)"},
      {"", "Error connecting to run factory on host 127.0.0.1 (2)"},
      {Text("OK|node017") + Message(1, Int(1)),
       "Abnormal error: Unexpected acknowledgement from Intersect controller"},
  };
  for (const auto& [answer, text] : answers) {
    ScriptedPeer peer;
    Hear(peer).ReplyBytes(answer);
    if (text.starts_with("Abnormal")) Script(peer, {">> 1 1"});
    peer.Start();
    EXPECT_EQ(StartFailure(peer), text);
  }
}

TEST(LinuxJobSession, DeclinesAFactoryOfAnotherVersionOrOfNone) {
  for (const auto& [version, found] :
       {std::pair{"2", "(2 - expected = 3)"}, {"three", "(0 - expected = 3)"}}) {
    ScriptedPeer peer;
    peer.ReplyBytes(Text(version)).ExpectBytes(Text("0")).Start();
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
