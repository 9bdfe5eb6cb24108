#include "runfactory/session.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include <boost/system/system_error.hpp>
#include <fmt/format.h>

#include "client/intersect_client.h"
#include "client/simulator_model.h"
#include "runfactory/controller.h"
#include "runfactory/driver_connection.h"
#include "runfactory/port_choice.h"
#include "runfactory/simulator.h"
#include "text/failure_text.h"

namespace gantry::cluster {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPlacementInterval{500};

class Session {
 public:
  explicit Session(SessionTask task)
      : task_(std::move(task)),
        driver_(std::move(task_.driver)),
        simulator_(task_.request.versionCode) {}

  int Run() {
    try {
      Start();
      Serve();
      return 0;
    } catch (const DriverBroken& broken) {
      Note(broken.what());
    } catch (const std::exception& failure) {
      Note(FailureText(failure, "the session"));
    }
    return 1;
  }

 private:
  void Note(const std::string& text) const { task_.log.Write(task_.label + ": " + text); }

  /// The reason goes to the driver as the one line that its user sees.
  void Start() {
    try {
      driver_.SendText("OK|" + BringUp());
    } catch (const DriverBroken&) {
      throw;
    } catch (const std::exception& failure) {
      driver_.SendText(OneLine(FailureText(failure, "the session")));
      throw;
    }
  }

  std::string BringUp() {
    const RunRequest& request = task_.request;
    const CaseLocation location =
        OpenCase(task_.options.maps, task_.options.roots, request.directory, request.baseName);
    const uint16_t port = ChoosePort(task_.options, task_.place);
    Note(fmt::format("starts {}/{} on {} processor(s), version {}", location.path,
                     location.baseName, request.parallel, request.versionCode));
    const std::unique_ptr<Job> job = task_.launcher.Start(location, request, port);
    ReportJob(job->Name());
    const Clock::time_point deadline =
        Clock::now() + std::chrono::seconds(task_.options.startSeconds);
    std::string node = AwaitNode(*job, deadline);
    AwaitSimulator(*job, node, port, deadline);
    Note(fmt::format("runs on {}, port {}, job {}", node, port, job->Name()));
    return node;
  }

  /// From here on the service ends the job.
  void ReportJob(const std::string& name) {
    const std::string line = name + "\n";
    const ssize_t written = platform::WithoutInterrupts(
        [&] { return ::write(task_.report.Number(), line.data(), line.size()); });
    if (written >= 0) return task_.report.Reset();
    const std::string reason = std::strerror(errno);
    task_.launcher.End(name);
    throw LaunchFailed("The run factory has gone: " + reason);
  }

  static std::string AwaitNode(Job& job, Clock::time_point deadline) {
    for (;;) {
      std::string node = job.Node();
      if (!node.empty()) return node;
      if (Clock::now() > deadline) {
        throw LaunchFailed("The simulator's job " + job.Name() + " still waits for a place");
      }
      std::this_thread::sleep_for(kPlacementInterval);
    }
  }

  void AwaitSimulator(Job& job, const std::string& node, uint16_t port,
                      Clock::time_point deadline) {
    while (!TryToConnect(job, node, port)) {
      job.Check();
      if (Clock::now() > deadline) FailToConnect(node, port, "it doesn't listen");
    }
  }

  [[noreturn]] static void FailToConnect(const std::string& node, uint16_t port,
                                         const std::string& why) {
    throw LaunchFailed(fmt::format("The simulator on {}, port {} is not up: {}", node, port, why));
  }

  /// Knocks for about a second; false when nobody has answered.
  bool TryToConnect(Job& job, const std::string& node, uint16_t port) {
    try {
      ConnectToModel(simulator_.Client(), node, port, 0);
      return true;
    } catch (const boost::system::system_error& failure) {
      job.Check();
      FailToConnect(node, port, failure.what());
    } catch (const std::runtime_error& failure) {
      if (simulator_.Client().position() == AlgorithmicPosition::UNCONNECTED) return false;
      FailToConnect(node, port, failure.what());
    }
  }

  void Serve() {
    Controller controller(simulator_, [this](const std::string& text) { Note(text); });
    if (!controller.Serve(driver_)) Note("the driver has closed its connection");
  }

  SessionTask task_;
  DriverConnection driver_;
  Simulator simulator_;
};

}  // namespace

int RunSession(SessionTask task) { return Session(std::move(task)).Run(); }

}  // namespace gantry::cluster
