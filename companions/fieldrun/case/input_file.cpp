#include "fieldrun/case/input_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fieldrun/case/case_model.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {

bool IsFile(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(platform::PathOf(path), ignored);
}

namespace {

const char* WhyNoFile(const std::string& path) {
  std::error_code ignored;
  const auto kind = std::filesystem::status(platform::PathOf(path), ignored).type();
  if (kind == std::filesystem::file_type::directory) return "this is a folder, not a file";
  const bool isNone =
      kind == std::filesystem::file_type::not_found || kind == std::filesystem::file_type::none;
  return isNone ? "no such file" : "this is a device, not a file";
}

}  // namespace

std::string ReadInputFile(const std::string& path) {
  if (!IsFile(path)) throw CaseError(path, 0, WhyNoFile(path));
  std::ifstream file(platform::PathOf(path), std::ios::binary);
  if (!file) throw CaseError(path, 0, "the file can't be read");
  try {
    return {std::istreambuf_iterator<char>(file), {}};
  } catch (const std::ios_base::failure& failure) {
    throw CaseError(path, 0, std::string("the file can't be read: ") + failure.code().message());
  }
}

}  // namespace gantry::fieldrun
