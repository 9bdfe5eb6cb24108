#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "platform/posix/descriptor.h"

namespace gantry::flowlink {

/// flow, running in a process group of its own with one end of a socket. The object's end is the
/// end of flow and of all that it has forked, and so is the end of this process however it comes.
class FlowProcess {
 public:
  /// Where in the user's files the reason of flow's end lies; empty when it isn't known.
  using PlaceOf = std::function<std::string(const std::string& reason)>;

  /// Starts a program, found as a shell finds it, in a folder; what it says goes to a log file
  /// there. Throws `LinkFault` when it can't be started.
  FlowProcess(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
              const std::string& log, PlaceOf placeOf);
  ~FlowProcess();
  FlowProcess(const FlowProcess&) = delete;
  FlowProcess& operator=(const FlowProcess&) = delete;

  /// One line to or from the script; false when flow has gone.
  bool WriteLine(const std::string& line);
  bool ReadLine(std::string& line);

  /// Waits for flow's own end, and says how it ended, what its log tells of the reason, and
  /// where in the user's files that lies.
  std::string DescribeEnd();
  /// Waits for flow's own end.
  void WaitForEnd();

 private:
  std::filesystem::path log_;
  PlaceOf placeOf_;
  pid_t process_ = -1;
  platform::Descriptor socket_;
  int status_ = 0;
  bool hasEnded_ = false;
  std::string received_;
};

}  // namespace gantry::flowlink
