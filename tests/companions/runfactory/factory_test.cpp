// The service as its users meet it: started as a program, spoken to by the driver's own session.

#include <csignal>
#include <filesystem>
#include <regex>

#include <unistd.h>

#include "factory_fixture.h"
#include "program.h"
#include "remote/socket.h"
#include "runfactory/dialogue.h"
#include "support/isolation.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

// The cluster's example, from the host's program to the simulator and back.
TEST_F(FactoryTest, GivesTheResultsOfTheLocalRunToTheLastDigit) {
  StartFactory();
  std::string text = TestFolder::Read(fs::path(EXAMPLES) / "five_spot/cluster.toml");
  text.replace(text.find("7777"), 4, std::to_string(factory->Port()));
  folder.Write("cases/cluster.toml", text);
  fs::copy(fs::path(EXAMPLES) / "five_spot/case.toml", folder / "cases");
  for (const std::string name : {"case", "cluster"}) {
    const auto outcome =
        fieldrun::test::RunFieldrun(folder, {"run", Cases() + "/" + name + ".toml", "--output",
                                             (folder / name).string(), "--steps", "24", "--quiet"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
  }
  for (const char* table : {"wells.csv", "inflow.csv", "field.csv"}) {
    const auto read = [&](const char* run) {  // without its last column, the run's id
      const std::string whole = TestFolder::Read(folder / run / table);
      return std::regex_replace(whole, std::regex(",[^,\n]*\n"), "\n");
    };
    EXPECT_GT(read("case").size(), 1000u) << table;
    EXPECT_EQ(read("case"), read("cluster")) << table;
  }
}

TEST_F(FactoryTest, TellsTheDriverInOneLineWhyThereIsNoSimulator) {
  StartFactory();
  folder.Write("cases/BROKEN.afi", "title = 3\nunits = \"metric\"\n");
  LinkSettings parallel = SettingsFor("FIVE_SPOT");
  parallel.Parallel = 2;
  const std::vector<std::pair<LinkSettings, std::string>> cases = {
      {SettingsFor("BROKEN"),
       "The simulator has ended (exit status 1): BROKEN.afi:1: 'title' must be a text (and 3 "
       "more)"},
      {SettingsFor("ABSENT"), "The run factory finds no case 'ABSENT' in " + Cases()},
      {parallel, "The run factory has no mpiexec for a run on 2 processors"},
  };
  for (const auto& [settings, reason] : cases) {
    EXPECT_EQ(Refusal(settings), reason);
    factory->AwaitLog("its place is free");
  }
  Begin("FIVE_SPOT");
}

TEST_F(FactoryTest, GivesUpASimulatorThatDoesNotListen) {
  StartFactory({"--start-seconds", "1"}, Script("silent", "exec sleep 1000"));
  EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("is not up: it doesn't listen"),
            std::string::npos);
  factory->AwaitLog("its place is free");
  EXPECT_TRUE(factory->Children().empty());
}

// A simulator that takes longer than one knock at its port is waited for.
TEST_F(FactoryTest, StartsWhatItsNamesMeantWhenItWasStartedItself) {
  Script("cases/tanksim", "exit 9");  // what anyone could put beside a case
  const std::string mpiexec =
      Script("mpiexec",
             "[ \"$1 $2 $6\" = \"-np 3 --dopt=external_controller_logger\" ] || exit 9\n"
             "sleep 2\nshift 2\nexec \"$@\"");
  const ScopedVariable path("PATH", fs::path(TANKSIM).parent_path().string() + ":/usr/bin:/bin");
  for (const std::string& name : {std::string("tanksim"), fs::relative(TANKSIM).string()}) {
    StartFactory({"--mpiexec", fs::relative(mpiexec).string()}, name);
    LinkSettings settings = SettingsFor("FIVE_SPOT");
    EXPECT_TRUE(Begin(settings)->IsRunning());
    settings.Parallel = 3;
    settings.StdLogging = true;
    EXPECT_TRUE(Begin(settings)->IsRunning());
  }
}

TEST_F(FactoryTest, ServesTwoDriversAtOnceAndNoMoreThanItHasPlacesFor) {
  StartFactory();
  auto first = Begin("FIVE_SPOT");
  EXPECT_EQ(first->GetHostDescription(), "localhost");
  const pid_t simulator = SimulatorOfNext();
  EXPECT_TRUE(IsAlive(simulator));
  const auto second = Begin("ODEH");
  EXPECT_EQ(Refusal(SettingsFor("ODEH")), "The run factory is full: it runs 2 sessions already");
  first->Connector->AdvanceNewton();
  second->Connector->AdvanceNewton();
  first->Connector->RunUntil(10.0);
  second->Connector->RunUntil(20.0);
  EXPECT_EQ(first->Connector->GetTimeDays(), 10.0);
  EXPECT_EQ(second->Connector->GetTimeDays(), 20.0);
  first.reset();
  factory->AwaitLog("the driver has shut the simulator down");
  factory->AwaitLog("its place is free");
  EXPECT_FALSE(IsAlive(simulator));
  EXPECT_TRUE(fs::exists(folder / "cases/FIVE_SPOT_factory.log"));
  EXPECT_TRUE(Begin("FIVE_SPOT")->IsRunning());
}

TEST_F(FactoryTest, EndsTheSimulatorOfASessionThatCrashes) {
  StartFactory();
  const auto session = Begin("FIVE_SPOT");
  const pid_t simulator = SimulatorOfNext();
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
  const auto other = Begin("ODEH");
  EXPECT_TRUE(IsAlive(SimulatorOfNext()));
  auto driver = std::make_unique<RawDriver>(factory->Port());
  const pid_t simulator = SimulatorOfNext();
  ::kill(simulator, SIGSTOP);
  driver->Put(cluster::FramedText(std::string("\7\0\0\0\7\0\0\0", 8)));
  driver.reset();
  factory->AwaitLog("session 2 (jo): its driver has gone");
  factory->AwaitLog("its place is free");
  EXPECT_FALSE(IsAlive(simulator));
  EXPECT_TRUE(other->IsRunning());
}

// However the service was started, its sessions find no sockets in the place of standard
// descriptors.
TEST_F(FactoryTest, StopsAllSessionsInOrderWhenASignalAsksItTo) {
  StartFactory({}, TANKSIM, {"/bin/sh", "-c", "exec \"$0\" \"$@\" <&- >&-"});
  const auto first = Begin("FIVE_SPOT");
  const auto second = Begin("FIVE_SPOT");
  const std::vector<pid_t> children = factory->Children();
  EXPECT_EQ(children.size(), 4u) << "a process and a simulator for each";
  for (const pid_t process : children) {
    const fs::path descriptors = "/proc/" + std::to_string(process) + "/fd";
    EXPECT_EQ(fs::read_symlink(descriptors / "0"), "/dev/null");
    EXPECT_TRUE(fs::read_symlink(descriptors / "1").string().starts_with('/'));
  }
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
  Begin("FIVE_SPOT");
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

}  // namespace
}  // namespace gantry::test
