#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

#include "cluster/unique_fd.h"
#include "remote/linux_job_session.h"
#include "settings/link_settings.h"
#include "support/test_folder.h"

namespace gantry::test {

/// A running service, ended with the object. Its log is read line by line.
class RunningFactory {
 public:
  /// It has two places and a port for the simulator of each. `arguments` say the rest.
  explicit RunningFactory(const std::vector<std::string>& arguments);
  ~RunningFactory();
  RunningFactory(const RunningFactory&) = delete;
  RunningFactory& operator=(const RunningFactory&) = delete;

  uint16_t Port() const { return port_; }
  /// Reads the log up to the next line that holds the text, and gives that line. Fails the test,
  /// and gives nothing, when the log ends first or says nothing for half a minute.
  std::string AwaitLog(const std::string& text);
  void Signal(int signal) const;
  /// The exit status, once it has ended.
  int Wait();
  /// The processes that it has started, and those that these have.
  std::vector<pid_t> Children() const;

 private:
  std::string ReadLine();

  pid_t process_ = -1;
  cluster::UniqueFd log_;
  std::string unread_;
  uint16_t port_ = 0;
};

/// The processes that a process has started.
std::vector<pid_t> ChildrenOf(pid_t process);
/// True while the process runs; one that has ended and that nobody has asked about doesn't.
bool IsAlive(pid_t process);

/// A folder with decks, a service that serves it, and drivers.
class FactoryTest : public ::testing::Test {
 protected:
  FactoryTest();

  /// Starts the service with the reference simulator, its cases in the folder.
  RunningFactory& StartFactory(const std::vector<std::string>& more = {});
  /// What a driver is set to for a case of the folder.
  LinkSettings SettingsFor(const std::string& deck, int32_t version = 20172) const;
  /// A session that is up. Fails the test when it isn't.
  std::unique_ptr<CLinuxJobSession> Begin(const LinkSettings& settings);
  /// The reason why a session can't be begun.
  static std::string Refusal(const LinkSettings& settings);
  /// The simulator of a session that has just been begun.
  pid_t SimulatorOf(const std::string& session);

  /// Copies a case file of the five-spot example to the folder, its factory's port set.
  void CopyExample(const std::string& name);
  /// Runs it for two years; the results are left in a folder of its name.
  void RunFieldrun(const std::string& name);

  TestFolder folder;
  std::unique_ptr<RunningFactory> factory;
};

}  // namespace gantry::test
