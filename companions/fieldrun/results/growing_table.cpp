#include "fieldrun/results/growing_table.h"

#include <cerrno>
#include <filesystem>

#include "fieldrun/results/output_file.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {

GrowingTable::GrowingTable(const std::string& path) : path_(path) {
  errno = 0;
  file_.open(platform::PathOf(path), std::ios::binary | std::ios::trunc);
  if (!file_) throw std::runtime_error(WriteFailure(path, errno));
}

GrowingTable::GrowingTable(const std::string& path, uint64_t size) : path_(path), size_(size) {
  std::error_code error;
  std::filesystem::resize_file(platform::PathOf(path), size, error);
  errno = error.value();
  if (!error) file_.open(platform::PathOf(path), std::ios::binary | std::ios::app);
  if (error || !file_) throw std::runtime_error(WriteFailure(path, errno));
}

void GrowingTable::Write(std::string_view rows) {
  errno = 0;
  file_.write(rows.data(), static_cast<std::streamsize>(rows.size()));
  file_.flush();
  const int error = errno;
  if (file_) {
    size_ += rows.size();
    return;
  }
  file_.close();
  std::error_code ignored;
  std::filesystem::resize_file(platform::PathOf(path_), size_, ignored);
  throw std::runtime_error(WriteFailure(path_, error) + "; what it held before is kept");
}

}  // namespace gantry::fieldrun
