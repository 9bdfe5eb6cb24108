#include "host/output_file.h"

#include <stdexcept>

#include "platform/files.h"

namespace gantry::fieldrun {

OutputFile::OutputFile(const std::string& path)
    : path_(path), file_(platform::ReplacementFile::Create(path)) {
  if (file_ == nullptr) Fail();
}

OutputFile::~OutputFile() = default;

void OutputFile::Fail() const {
  throw std::runtime_error("The file " + path_ + " can't be written");
}

void OutputFile::Flush() {
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

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\n\r") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? "\"\"" : std::string(1, c);
  return field + '"';
}

}  // namespace gantry::fieldrun
