#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace gantry::toml_reader {

/// What is wrong with a line of a file of the user's, or can hardly be meant.
struct Finding {
  int line = 0;  ///< from 1; 0 where the file as a whole is meant
  std::string reason;
  bool isError = true;

  /// "file:line: reason", with "warning: " before the reason of a warning.
  std::string In(const std::string& file) const;
};

/// A file of the user's that can't be used as it stands. what() has a line for each fault,
/// "file:line: reason".
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& file, int line, const std::string& reason);
  FileError(const std::string& file, std::vector<Finding> findings);

  std::vector<Finding> Findings;
};

}  // namespace gantry::toml_reader
