#include "sessions/job_slot.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "boundary/error_text.h"
#include "platform/environment.h"
#include "platform/files.h"

namespace gantry {
namespace {

constexpr size_t kNumberCapacity = 16;
constexpr size_t kHostCapacity = 256;

int ReadNumber(const char* variable) {
  const auto text = platform::ReadEnvironment(variable, kNumberCapacity);
  return text && !text->empty() ? std::atoi(text->c_str()) : -1;
}

std::string ReadUpperCase(const char* variable) {
  std::string text = platform::ReadEnvironment(variable, kHostCapacity).value_or("");
  std::ranges::transform(text, text.begin(), [](char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  });
  return text;
}

/// Puts the slot's mark between name and extension.
std::string NameInSlot(const std::string& fileName, const std::string& host, int slot) {
  const size_t separator = fileName.find_last_of(std::string{'/', platform::kPathSeparator});
  const size_t name = separator == std::string::npos ? 0 : separator + 1;
  size_t extension = fileName.rfind('.');
  if (extension == std::string::npos || extension < name) extension = fileName.size();
  return FormatText("%s_%s_%d%s", fileName.substr(0, extension).c_str(), host.c_str(), slot,
                    fileName.substr(extension).c_str());
}

}  // namespace

std::string DatasetForJobSlot(const std::string& fileName) {
  if (ReadNumber("OVC_JOBID") < 0) return fileName;
  const std::string copy =
      NameInSlot(fileName, ReadUpperCase("OVC_HOST"), ReadNumber("OVC_JOBSLOT"));
  return platform::CopyFileOver(fileName, copy) ? copy : fileName;
}

}  // namespace gantry
