#pragma once

#include <filesystem>
#include <string>

namespace gantry::flowlink {

/// What a run's user should know of it: on standard error at once, and line by line in a file that
/// a host may show when the run is over.
class RunNotes {
 public:
  explicit RunNotes(std::filesystem::path file) : file_(std::move(file)) {}

  void Add(const std::string& text);

 private:
  std::filesystem::path file_;
};

}  // namespace gantry::flowlink
