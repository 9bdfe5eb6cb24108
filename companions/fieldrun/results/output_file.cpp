#include "fieldrun/results/output_file.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "platform/files.h"

namespace gantry::fieldrun {

void WriteWhole(const std::string& path, std::string_view content) {
  errno = 0;
  const auto file = platform::ReplacementFile::Create(path);
  if (file == nullptr) throw std::runtime_error(WriteFailure(path, errno));
  errno = 0;
  if (file->File().Write(content.data(), content.size()) && file->Commit()) return;
  throw std::runtime_error(WriteFailure(path, errno));
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
