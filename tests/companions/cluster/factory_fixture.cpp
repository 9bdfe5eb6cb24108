#include "factory_fixture.h"

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>

#include "cluster/program.h"
#include "support/free_ports.h"

namespace gantry::test {

namespace fs = std::filesystem;

namespace {

constexpr int kPatienceMilliseconds = 30000;

}  // namespace

RunningFactory::RunningFactory(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  log_ = cluster::UniqueFd(ends[0]);
  const cluster::UniqueFd writeEnd(ends[1]);
  const int first = FreePorts(2);
  cluster::Program program;
  program.arguments = {RUNFACTORY,
                       "--listen",
                       "127.0.0.1:0",
                       "--ports",
                       std::to_string(first) + "-" + std::to_string(first + 1),
                       "--max-sessions",
                       "2"};
  program.arguments.insert(program.arguments.end(), arguments.begin(), arguments.end());
  program.output = writeEnd.Get();
  process_ = cluster::StartProgram(program);
  // Standard output and the log are one pipe, and both begin with this.
  const std::string line = AwaitLog("listens on 127.0.0.1:");
  port_ = static_cast<uint16_t>(std::stoi(line.substr(line.rfind(':') + 1)));
}

RunningFactory::~RunningFactory() {
  if (process_ < 0) return;
  Signal(SIGTERM);
  Wait();
}

std::string RunningFactory::ReadLine() {
  size_t end = 0;
  while ((end = unread_.find('\n')) == std::string::npos) {
    pollfd waiting = {log_.Get(), POLLIN, 0};
    std::array<char, 4096> block{};
    if (::poll(&waiting, 1, kPatienceMilliseconds) <= 0) return {};
    const ssize_t count = ::read(log_.Get(), block.data(), block.size());
    if (count <= 0) return {};
    unread_.append(block.data(), static_cast<size_t>(count));
  }
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end + 1);
  return line;
}

std::string RunningFactory::AwaitLog(const std::string& text) {
  std::string read;
  for (std::string line = ReadLine(); !line.empty(); line = ReadLine()) {
    read += line + "\n";
    if (line.find(text) != std::string::npos) return line;
  }
  ADD_FAILURE() << "the log doesn't say '" << text << "' but\n" << read;
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
  std::vector<pid_t> all;
  for (const pid_t child : ChildrenOf(process_)) {
    all.push_back(child);
    for (const pid_t grandchild : ChildrenOf(child)) all.push_back(grandchild);
  }
  return all;
}

std::vector<pid_t> ChildrenOf(pid_t process) {
  const std::string number = std::to_string(process);
  std::ifstream list("/proc/" + number + "/task/" + number + "/children");
  std::vector<pid_t> children;
  for (pid_t child = 0; list >> child;) children.push_back(child);
  return children;
}

bool IsAlive(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::ostringstream text;
  text << file.rdbuf();
  const size_t state = text.str().rfind(") ");
  return state != std::string::npos && text.str()[state + 2] != 'Z';
}

FactoryTest::FactoryTest() {
  for (const char* deck :
       {"five_spot/FIVE_SPOT.afi", "gas_cycling/GAS_CYCLING.afi", "odeh/ODEH.afi"}) {
    const fs::path source = fs::path(EXAMPLES) / deck;
    folder.Write("cases/" + source.filename().string(), TestFolder::Read(source));
  }
}

RunningFactory& FactoryTest::StartFactory(const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"--simulator", TANKSIM, "--map",
                                        "C:\\Cases=" + (folder / "cases").string()};
  arguments.insert(arguments.end(), more.begin(), more.end());
  factory = std::make_unique<RunningFactory>(arguments);
  return *factory;
}

LinkSettings FactoryTest::SettingsFor(const std::string& deck, int32_t version) const {
  LinkSettings settings;
  settings.ConnectionMode = 1;
  settings.HeadNode = "127.0.0.1";
  settings.HeadNodePort = factory->Port();
  settings.LinuxIXVersion = version;
  settings.FileName = "C:\\Cases\\" + deck + ".afi";
  return settings;
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

void FactoryTest::CopyExample(const std::string& name) {
  std::string text = TestFolder::Read(fs::path(EXAMPLES) / "five_spot" / (name + ".toml"));
  const std::string key = "head_node_port = ";
  if (const size_t place = text.find(key); place != std::string::npos) {
    const size_t begin = place + key.size();
    text.replace(begin, text.find('\n', begin) - begin, std::to_string(factory->Port()));
  }
  folder.Write("cases/" + name + ".toml", text);
}

void FactoryTest::RunFieldrun(const std::string& name) {
  StartSimulatorsOnFreePorts();
  const cluster::Outcome outcome =
      cluster::RunProgram({FIELDRUN, "run", (folder / ("cases/" + name + ".toml")).string(),
                           "--output", (folder / name).string(), "--steps", "24", "--quiet"},
                          100);
  ASSERT_EQ(outcome.exitStatus, 0) << outcome.output;
}

pid_t FactoryTest::SimulatorOf(const std::string& session) {
  const std::string line = factory->AwaitLog(session);
  return std::stoi(line.substr(line.rfind(' ') + 1));
}

}  // namespace gantry::test
