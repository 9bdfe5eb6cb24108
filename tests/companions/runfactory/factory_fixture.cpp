#include "factory_fixture.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <sstream>

#include <fcntl.h>
#include <sys/wait.h>

#include "runfactory/program.h"
#include "support/free_ports.h"

namespace gantry::test {

namespace fs = std::filesystem;

namespace {

std::vector<pid_t> ChildrenOf(pid_t process) {
  const std::string number = std::to_string(process);
  std::istringstream list(TestFolder::Read("/proc/" + number + "/task/" + number + "/children"));
  return {std::istream_iterator<pid_t>(list), {}};
}

}  // namespace

RunningFactory::RunningFactory(std::vector<std::string> command) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  log_.reset(::fdopen(ends[0], "r"));
  const platform::Descriptor writeEnd(ends[1]);
  process_ = cluster::StartProgram({.arguments = std::move(command), .output = writeEnd.Number()});
  // Standard output and the log are one pipe, and both begin with this.
  const std::string line = AwaitLog("listens on 127.0.0.1:");
  port_ = static_cast<uint16_t>(std::stoi(line.substr(line.rfind(':') + 1)));
}

RunningFactory::~RunningFactory() {
  if (process_ < 0) return;
  Signal(SIGTERM);
  Wait();
}

std::string RunningFactory::AwaitLog(const std::string& text) {
  std::string said;
  for (std::array<char, 4096> line{}; std::fgets(line.data(), line.size(), log_.get());) {
    said = line.data();
    std::cout << said;
    if (said.find(text) != std::string::npos) return said.substr(0, said.size() - 1);
  }
  ADD_FAILURE() << "the log doesn't say '" << text << "'";
  return {};
}

void RunningFactory::Signal(int signal) const { ::kill(process_, signal); }

int RunningFactory::Wait() {
  int status = 0;
  ::waitpid(process_, &status, 0);
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<pid_t> RunningFactory::Children() const {
  std::vector<pid_t> all = ChildrenOf(process_);
  for (const pid_t child : ChildrenOf(process_)) {
    for (const pid_t grandchild : ChildrenOf(child)) all.push_back(grandchild);
  }
  return all;
}

bool IsAlive(pid_t process) {
  const std::string status = TestFolder::Read("/proc/" + std::to_string(process) + "/stat");
  const size_t state = status.rfind(") ");
  return state != std::string::npos && status[state + 2] != 'Z';
}

FactoryTest::FactoryTest() {
  fs::create_directory(folder / "cases");
  for (const char* deck : {"five_spot/FIVE_SPOT.afi", "odeh/ODEH.afi"}) {
    fs::copy(fs::path(EXAMPLES) / deck, folder / "cases");
  }
}

std::string FactoryTest::Script(const std::string& name, const std::string& text) const {
  const fs::path script = folder.Write(name, "#!/bin/sh\n" + text + "\n");
  fs::permissions(script, fs::perms::owner_all);
  return script.string();
}

void FactoryTest::StartFactory(const std::vector<std::string>& more, const std::string& simulator,
                               const std::vector<std::string>& wrapper) {
  // It listens on one itself, so that a place has to pass that over.
  const int first = FreePorts(4);
  std::vector<std::string> command = wrapper;
  for (const std::string& word :
       {std::string(RUNFACTORY), std::string("--allow-root"),
        "--listen=127.0.0.1:" + std::to_string(first),
        "--ports=" + std::to_string(first) + "-" + std::to_string(first + 3),
        std::string("--max-sessions=2"), "--simulator=" + simulator, "--map=C:\\Cases=" + Cases(),
        "--root=" + Cases()}) {
    command.push_back(word);
  }
  command.insert(command.end(), more.begin(), more.end());
  factory = std::make_unique<RunningFactory>(std::move(command));
}

LinkSettings FactoryTest::SettingsFor(const std::string& deck) const {
  LinkSettings settings;
  settings.ConnectionMode = 1;
  settings.HeadNode = "127.0.0.1";
  settings.HeadNodePort = factory->Port();
  settings.LinuxIXVersion = 20172;
  settings.FileName = "C:\\Cases\\" + deck + ".afi";
  return settings;
}

std::unique_ptr<CLinuxJobSession> FactoryTest::Begin(const std::string& deck) {
  return Begin(SettingsFor(deck));
}

std::unique_ptr<CLinuxJobSession> FactoryTest::Begin(const LinkSettings& settings) {
  auto session = std::make_unique<CLinuxJobSession>(settings);
  std::string message;
  EXPECT_EQ(session->Start(message), 0) << message;
  return session;
}

std::string FactoryTest::Refusal(const LinkSettings& settings) {
  std::string message = "nothing";
  EXPECT_EQ(CLinuxJobSession(settings).Start(message), 1);
  return message;
}

pid_t FactoryTest::SimulatorOfNext() {
  const std::string line = factory->AwaitLog("runs on localhost");
  return std::stoi(line.substr(line.rfind(' ') + 1));
}

}  // namespace gantry::test
