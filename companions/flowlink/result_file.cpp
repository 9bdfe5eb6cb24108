#include "flowlink/result_file.h"

#include <fstream>
#include <string_view>

namespace gantry::flowlink {

namespace {

constexpr uint32_t kHeaderLength = 16;
constexpr uint32_t kElementLength = 4;
constexpr uint32_t kLongElementLength = 8;

uint32_t ReadNumber(std::istream& file) {
  unsigned char bytes[4] = {};
  file.read(reinterpret_cast<char*>(bytes), sizeof bytes);
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

/// The length of an element by its type; "C" and three digits for a text of that length.
uint32_t LengthOf(std::string_view type) {
  if (type == "MESS") return 0;
  if (type == "DOUB" || type == "CHAR") return kLongElementLength;
  if (type[0] != 'C') return kElementLength;
  uint32_t length = 0;
  for (const char digit : type.substr(1)) length = 10 * length + static_cast<uint32_t>(digit - '0');
  return length;
}

struct Array {
  char name[8];
  uint32_t first = 0;  ///< its first four bytes as a number
};

/// Steps over an array. False where it isn't whole.
bool ReadArray(std::istream& file, Array& array) {
  if (ReadNumber(file) != kHeaderLength) return false;
  file.read(array.name, sizeof array.name);
  const uint64_t count = ReadNumber(file);
  char type[4];
  file.read(type, sizeof type);
  if (ReadNumber(file) != kHeaderLength || !file) return false;
  const uint64_t size = count * LengthOf({type, sizeof type});
  for (uint64_t left = size; left > 0;) {
    const uint32_t length = ReadNumber(file);
    const auto begin = file.tellg();
    if (left == size) array.first = ReadNumber(file);
    file.seekg(begin + static_cast<std::streamoff>(length));
    if (ReadNumber(file) != length || !file || length == 0 || length > left) return false;
    left -= length;
  }
  return true;
}

bool IsNamed(const Array& array, std::string_view name) {
  return std::string_view(array.name, sizeof array.name).starts_with(name);
}

}  // namespace

bool ResultFile::IsWhole() {
  std::ifstream file(path_, std::ios::binary | std::ios::ate);
  if (!file) return true;
  const int64_t end = file.tellg();
  if (end < checked_) checked_ = 0;
  file.seekg(checked_);
  Array array;
  while (checked_ < end) {
    if (!ReadArray(file, array) || file.tellg() > end) return false;
    checked_ = file.tellg();
  }
  return true;
}

void ResultFile::CutToWhole() {
  std::error_code ignored;
  if (!IsWhole()) std::filesystem::resize_file(path_, static_cast<uint64_t>(checked_), ignored);
}

bool ResultFile::HasReport(int report) const {
  std::ifstream file(path_, std::ios::binary);
  bool isWithin = false;
  for (Array array; ReadArray(file, array);) {
    if (IsNamed(array, "SEQNUM ")) isWithin = array.first == static_cast<uint32_t>(report);
    if (isWithin && IsNamed(array, "ENDSOL ")) return true;
  }
  return false;
}

}  // namespace gantry::flowlink
