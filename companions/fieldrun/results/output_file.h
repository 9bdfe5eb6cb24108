#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace gantry::platform {
class ReplacementFile;
}

namespace gantry::fieldrun {

/// A file of results that takes its name only when it is complete: until then, and when it is
/// dropped, whatever stood there stays. Throws runtime_error, naming the file, on any failure.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile();

  void Write(std::string_view text);
  void Finish();

 private:
  void Flush();
  [[noreturn]] void Fail() const;

  std::string path_;
  std::string buffer_;
  std::unique_ptr<platform::ReplacementFile> file_;
};

/// "The file PATH can't be written: REASON", with the system's text for an error number; without a
/// reason for 0.
std::string WriteFailure(const std::string& path, int error);

/// A field of a comma-separated table, in quotes where it needs them.
std::string CsvField(std::string_view text);

}  // namespace gantry::fieldrun
