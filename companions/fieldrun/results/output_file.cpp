#include "fieldrun/results/output_file.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "platform/files.h"

namespace gantry::fieldrun {

OutputFile::OutputFile(const std::string& path)
    : path_(path), file_((errno = 0, platform::ReplacementFile::Create(path))) {
  if (file_ == nullptr) Fail();
}

OutputFile::~OutputFile() = default;

void OutputFile::Fail() const { throw std::runtime_error(WriteFailure(path_, errno)); }

void OutputFile::Flush() {
  errno = 0;
  if (!file_->File().Write(buffer_.data(), buffer_.size())) Fail();
  buffer_.clear();
}

void OutputFile::Write(std::string_view text) {
  constexpr size_t kFull = 1 << 16;
  buffer_ += text;
  if (buffer_.size() >= kFull) Flush();
}

void OutputFile::Finish() {
  Flush();
  if (!file_->Commit()) Fail();
}

std::string WriteFailure(const std::string& path, int error) {
  const std::string reason = error == 0 ? "" : ": " + std::generic_category().message(error);
  return "The file " + path + " can't be written" + reason;
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\n\r") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? "\"\"" : std::string(1, c);
  return field + '"';
}

}  // namespace gantry::fieldrun
