// The service as its users meet it: started as a program, spoken to by the driver's own session.

#include <csignal>
#include <filesystem>

#include "cluster/dialogue.h"
#include "cluster/program.h"
#include "factory_fixture.h"
#include "remote/socket.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRunsOn = "runs on localhost";

TEST_F(FactoryTest, RunsACaseAndFreesItsPlaceWhenTheDriverShutsItDown) {
  StartFactory();
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  auto session = Begin(settings);
  EXPECT_EQ(session->GetHostDescription(), "localhost");
  const pid_t simulator = SimulatorOf(kRunsOn);
  EXPECT_TRUE(IsAlive(simulator));
  session->Connector->AdvanceNewton();
  session->Connector->RunUntil(31.0);
  EXPECT_EQ(session->Connector->GetTimeDays(), 31.0);
  session.reset();
  factory->AwaitLog("the driver has shut the simulator down");
  factory->AwaitLog("its place is free");
  EXPECT_FALSE(IsAlive(simulator));
  EXPECT_TRUE(fs::exists(folder / "cases/FIVE_SPOT_factory.log"));
}

TEST_F(FactoryTest, TellsTheDriverInOneLineWhyThereIsNoSimulator) {
  StartFactory();
  folder.Write("cases/BROKEN.afi", "title = 3\n");
  LinkSettings elsewhere = SettingsFor("FIVE_SPOT");
  elsewhere.FileName = "D:\\Cases\\FIVE_SPOT.afi";
  LinkSettings parallel = SettingsFor("FIVE_SPOT");
  parallel.Parallel = 2;
  const std::vector<std::pair<LinkSettings, std::string>> cases = {
      {SettingsFor("BROKEN"),
       "The simulator has ended (exit status 1): BROKEN.afi:1: 'title' must be a text"},
      {SettingsFor("ABSENT"),
       "The run factory finds no case 'ABSENT' in " + (folder / "cases").string()},
      {elsewhere,
       "The run factory can't open the case directory D:\\Cases\\: it lies under no "
       "directory that is served here"},
      {parallel, "The run factory has no mpiexec for a run on 2 processors"},
  };
  for (const auto& [settings, reason] : cases) {
    EXPECT_EQ(Refusal(settings), reason);
    factory->AwaitLog("its place is free");
  }
  Begin(SettingsFor("FIVE_SPOT"));
}

TEST_F(FactoryTest, GivesUpASimulatorThatDoesNotListen) {
  const fs::path silent = folder.Write("silent", "#!/bin/sh\nexec sleep 1000\n");
  fs::permissions(silent, fs::perms::owner_all);
  factory = std::make_unique<RunningFactory>(
      std::vector<std::string>{"--simulator", silent.string(), "--root",
                               (folder / "cases").string(), "--start-seconds", "1"});
  LinkSettings settings = SettingsFor("FIVE_SPOT");
  settings.FileName = (folder / "cases/FIVE_SPOT.afi").string();
  EXPECT_NE(Refusal(settings).find("is not up: it doesn't listen"), std::string::npos);
  factory->AwaitLog("its place is free");
  EXPECT_TRUE(factory->Children().empty());
}

TEST_F(FactoryTest, StartsParallelRunsThroughMpiexec) {
  const fs::path mpiexec = folder.Write(
      "mpiexec", "#!/bin/sh\n[ \"$1 $2\" = \"-np 3\" ] || exit 9\nshift 2\nexec \"$@\"\n");
  fs::permissions(mpiexec, fs::perms::owner_all);
  StartFactory({"--mpiexec", mpiexec.string()});
  LinkSettings settings = SettingsFor("FIVE_SPOT");
  settings.Parallel = 3;
  EXPECT_TRUE(Begin(settings)->IsRunning());
}

TEST_F(FactoryTest, ServesTwoDriversAtOnceAndNoMoreThanItHasPlacesFor) {
  StartFactory();
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  auto first = Begin(settings);
  const auto second = Begin(SettingsFor("ODEH"));
  EXPECT_EQ(Refusal(settings), "The run factory is full: it runs 2 sessions already");
  first->Connector->AdvanceNewton();
  second->Connector->AdvanceNewton();
  first->Connector->RunUntil(10.0);
  second->Connector->RunUntil(20.0);
  EXPECT_EQ(first->Connector->GetTimeDays(), 10.0);
  EXPECT_EQ(second->Connector->GetTimeDays(), 20.0);
  first.reset();
  factory->AwaitLog("its place is free");
  EXPECT_TRUE(Begin(settings)->IsRunning());
}

TEST_F(FactoryTest, EndsTheSimulatorOfASessionThatCrashes) {
  StartFactory();
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  const auto session = Begin(settings);
  const pid_t simulator = SimulatorOf(kRunsOn);
  ::kill(factory->Children().front(), SIGKILL);
  factory->AwaitLog("its process has ended, signal 9");
  factory->AwaitLog("its place is free");
  EXPECT_FALSE(IsAlive(simulator));
  EXPECT_THROW(session->Connector->GetVersion(), std::runtime_error) << "its connection is closed";
}

/// A driver that says what no driver of this system would.
class RawDriver : public SocketClient {
 public:
  explicit RawDriver(uint16_t port) : SocketClient("127.0.0.1", port) {
    int32_t length = 0;
    ReceiveText(length);
    for (const char* line : {"1", "0", "C:\\Cases\\", "FIVE_SPOT", "1", "20172", "jo", "0"}) {
      SendText(line);
    }
    EXPECT_EQ(ReceiveText(length), "OK|localhost");
  }

  void Put(const std::string& bytes) {
    platform::Sockets().Send(Handle(), std::as_bytes(std::span(bytes)));
  }
};

TEST_F(FactoryTest, EndsASessionThatLosesItsDriverWhileTheSimulatorIsBusy) {
  StartFactory();
  auto driver = std::make_unique<RawDriver>(factory->Port());
  const pid_t simulator = SimulatorOf("session 1 (jo): " + std::string(kRunsOn));
  ::kill(simulator, SIGSTOP);
  driver->Put(cluster::FramedText(std::string("\7\0\0\0\7\0\0\0", 8)));
  driver.reset();
  factory->AwaitLog("its driver has gone");
  factory->AwaitLog("its place is free");
  EXPECT_FALSE(IsAlive(simulator));
}

TEST_F(FactoryTest, StopsAllSessionsInOrderWhenASignalAsksItTo) {
  StartFactory();
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  const auto first = Begin(settings);
  const auto second = Begin(settings);
  const std::vector<pid_t> children = factory->Children();
  EXPECT_EQ(children.size(), 4u) << "a process and a simulator for each";
  factory->Signal(SIGTERM);
  factory->AwaitLog("has stopped");
  EXPECT_EQ(factory->Wait(), 0);
  for (const pid_t child : children) EXPECT_FALSE(IsAlive(child));
}

TEST_F(FactoryTest, DropsPeersThatSayNothingOrNonsenseAndServesDriversAllTheWhile) {
  StartFactory({"--dialogue-seconds", "6"});
  std::vector<std::unique_ptr<SocketClient>> silent;
  for (int i = 0; i < 200; ++i) {
    silent.push_back(std::make_unique<SocketClient>("127.0.0.1", factory->Port()));
  }
  SocketClient garbage("127.0.0.1", factory->Port());
  garbage.SendText(std::string(5000, 'x'));
  factory->AwaitLog("is dropped: its version word claims 5000 characters");
  Begin(SettingsFor("FIVE_SPOT"));
  int32_t length = 0;
  for (const auto& peer : silent) {
    EXPECT_EQ(peer->ReceiveText(length), "3");
    peer->ReceiveText(length);
    EXPECT_EQ(length, 0) << "the connection is closed";
  }
}

TEST_F(FactoryTest, DropsADriverWhoseRequestsMakeNoSense) {
  StartFactory();
  const std::vector<std::pair<std::string, std::string>> requests = {
      {std::string("\xff\xff\xff\xff", 4), "a request of 4294967295 bytes"},
      {std::string("\2\0\0\0xx", 6), "a request of 2 bytes"},
      {cluster::FramedText(std::string("\x63\0\0\0\0\0\0\0", 8)), "unknown routine 99"},
      {cluster::FramedText(std::string("\x0a\0\0\0\xff\xff\xff\x7f", 8)), "counts don't fit"},
      {cluster::FramedText(std::string("\x10\0\0\0\xff\xff\xff\x7f", 8)), "2147483647 components"},
      {cluster::FramedText(std::string("\x08\0\0\0\0\0\0\0\0\0\xf8\x7f", 12)), "no number"},
  };
  for (const auto& [bytes, reason] : requests) {
    RawDriver driver(factory->Port());
    driver.Put(bytes);
    factory->AwaitLog(reason);
    int32_t length = 0;
    driver.ReceiveText(length);
    EXPECT_EQ(length, 0) << "the connection is closed";
    factory->AwaitLog("its place is free");
  }
}

TEST_F(FactoryTest, RefusesABadCommandLineWithItsReason) {
  const std::string cases = (folder / "cases").string();
  const std::vector<std::pair<std::vector<std::string>, std::string>> lines = {
      {{"--simulator", TANKSIM}, "no case could be opened"},
      {{"--root", cases}, "--simulator is required"},
      {{"--simulator", "/nowhere", "--root", cases}, "is no program"},
      {{"--simulator", "/tmp", "--root", cases}, "is no program"},
      {{"--simulator", TANKSIM, "--root", "cases"}, "is not absolute"},
      {{"--simulator", TANKSIM, "--map", "x"}, "--map wants FROM=TO"},
      {{"--simulator", TANKSIM, "--root", cases, "--listen", "here"}, "ADDRESS:PORT"},
      {{"--simulator", TANKSIM, "--root", cases, "--ports", "9-3"}, "FIRST-LAST"},
      {{"--simulator", TANKSIM, "--root", cases, "--ports", "1-3"}, "fewer ports"},
      {{"--simulator", TANKSIM, "--root", cases, "--launcher", "cron"}, "local or slurm, not"},
  };
  for (const auto& [line, reason] : lines) {
    std::vector<std::string> command = {RUNFACTORY};
    command.insert(command.end(), line.begin(), line.end());
    const cluster::Outcome outcome = cluster::RunProgram(command, 20);
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_NE(outcome.output.find(reason), std::string::npos) << outcome.output;
  }
}

}  // namespace
}  // namespace gantry::test
