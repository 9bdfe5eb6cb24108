#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

#include "platform/posix/descriptor.h"
#include "sessions/linux_job_session.h"
#include "settings/link_settings.h"
#include "support/test_folder.h"

namespace gantry::test {

/// A running service, ended with the object. Its log is read line by line.
class RunningFactory {
 public:
  explicit RunningFactory(std::vector<std::string> command);
  ~RunningFactory();
  RunningFactory(const RunningFactory&) = delete;
  RunningFactory& operator=(const RunningFactory&) = delete;

  uint16_t Port() const { return port_; }
  /// Reads the log, and shows it, up to the next line that holds the text, and gives that line.
  /// Fails the test, and gives nothing, when the log ends first.
  std::string AwaitLog(const std::string& text);
  void Signal(int signal) const;
  /// The exit status, once it has ended.
  int Wait();
  /// The processes that it has started, and those that these have.
  std::vector<pid_t> Children() const;

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> log_{nullptr, &std::fclose};
  pid_t process_ = -1;
  uint16_t port_ = 0;
};

/// True while the process runs; one that has ended and that nobody has asked about doesn't.
bool IsAlive(pid_t process);

/// A folder with decks, a service that serves it, and drivers.
class FactoryTest : public ::testing::Test {
 protected:
  FactoryTest();

  std::string Cases() const { return (folder / "cases").string(); }
  /// A program of that text.
  std::string Script(const std::string& name, const std::string& text) const;
  /// Starts a service of two places with that simulator, its cases in the folder; `wrapper` is what
  /// starts the service in turn.
  void StartFactory(const std::vector<std::string>& more = {},
                    const std::string& simulator = TANKSIM,
                    const std::vector<std::string>& wrapper = {});
  /// What a driver is set to for a case of the folder.
  LinkSettings SettingsFor(const std::string& deck) const;
  /// A session that is up. Fails the test when it isn't.
  std::unique_ptr<CLinuxJobSession> Begin(const std::string& deck);
  std::unique_ptr<CLinuxJobSession> Begin(const LinkSettings& settings);
  /// The reason why a session can't be begun.
  static std::string Refusal(const LinkSettings& settings);
  /// The simulator, or its job, of a session that has just been begun.
  pid_t SimulatorOfNext();

  TestFolder folder;
  std::unique_ptr<RunningFactory> factory;
};

}  // namespace gantry::test
