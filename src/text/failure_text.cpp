#include "text/failure_text.h"

#include <filesystem>
#include <new>

#include "platform/file_path.h"

namespace gantry {

std::string FailureText(const std::exception& failure, std::string_view purpose) {
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
    return "not enough memory" + (purpose.empty() ? "" : " for " + std::string(purpose));
  }
  if (const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&failure)) {
    return platform::NameOf(file->path1()) + " can't be reached: " + file->code().message();
  }
  return failure.what();
}

}  // namespace gantry
