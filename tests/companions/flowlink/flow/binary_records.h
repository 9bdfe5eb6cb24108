#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace gantry::flowlink::test {

/// A big-endian number between whose two copies a record of a Fortran file stands, and the record.
inline std::optional<std::string> ReadRecord(std::istream& file) {
  const auto length = [&] {
    unsigned char bytes[4] = {};
    file.read(reinterpret_cast<char*>(bytes), 4);
    return static_cast<uint32_t>(bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3]);
  };
  const uint32_t before = length();
  if (!file || before > 1'000'000) return std::nullopt;
  std::string record(before, '\0');
  file.read(record.data(), before);
  if (length() != before || !file) return std::nullopt;
  return record;
}

/// How many arrays of a name a restart or summary file of flow holds; -1 when it isn't whole. Each
/// array is a record of 16 bytes (name, number of elements, type) and the records of its elements.
inline int CountRecords(const std::filesystem::path& path, const std::string& name) {
  std::ifstream file(path, std::ios::binary);
  const std::string padded = (name + "        ").substr(0, 8);
  int count = 0;
  bool awaitsElements = false;
  while (file.peek() != std::ifstream::traits_type::eof()) {
    const auto record = ReadRecord(file);
    if (!record) return -1;
    const bool isHeader = record->size() == 16 && record->find_first_of("ICDLRM", 12) == 12;
    awaitsElements = isHeader && record->substr(8, 4) != std::string(4, '\0');
    if (isHeader && record->starts_with(padded)) ++count;
  }
  return file.bad() || awaitsElements ? -1 : count;
}

}  // namespace gantry::flowlink::test
