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

std::string WhyNoFile(std::filesystem::file_type kind, const std::error_code& error) {
  if (kind == std::filesystem::file_type::directory) return "this is a folder, not a file";
  if (kind == std::filesystem::file_type::not_found) return "no such file";
  return error ? "the file can't be reached: " + error.message() : "this is a device, not a file";
}

}  // namespace

std::string ReadInputFile(const std::string& path) {
  std::error_code error;
  const auto kind = std::filesystem::status(platform::PathOf(path), error).type();
  if (kind != std::filesystem::file_type::regular) {
    throw CaseError(path, 0, WhyNoFile(kind, error));
  }
  std::ifstream file(platform::PathOf(path), std::ios::binary);
  if (!file) throw CaseError(path, 0, "the file can't be read");
  try {
    return {std::istreambuf_iterator<char>(file), {}};
  } catch (const std::ios_base::failure& failure) {
    throw CaseError(path, 0, std::string("the file can't be read: ") + failure.code().message());
  }
}

}  // namespace gantry::fieldrun
