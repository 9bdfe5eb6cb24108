#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gantry::platform {

/// The text of a registry file: keys and values in the REGEDIT4 form, which docs/registry-file.md
/// shows. Keys and the names of values are compared without regard to case; where one stands more
/// than once the last counts. Whatever isn't asked for, or isn't understood, stays byte for byte.
class RegistryText {
 public:
  explicit RegistryText(std::string_view text);

  std::string Text() const;

  bool HasKey(std::string_view key) const;
  void AddKey(std::string_view key);
  /// The data of a value, as it is written behind the "="; none when there is no such value.
  std::optional<std::string> Find(std::string_view key, std::string_view name) const;
  /// Puts the data in the place of the value's last one, or behind the key's other values. The key
  /// must be there.
  void Set(std::string_view key, std::string_view name, std::string_view data);

 private:
  struct Entry {
    enum class Kind { kOther, kKey, kValue };
    Kind kind = Kind::kOther;
    std::string raw;   ///< as it stands in the file, with its line ends
    std::string name;  ///< of the key or the value, in plain text
    std::string data;  ///< of a value
  };
  static Entry ReadEntry(std::string_view raw);
  /// The position of the key's value of that name, and the one at which a new value belongs.
  struct Place {
    std::optional<size_t> value;
    std::optional<size_t> end;
  };
  Place Locate(std::string_view key, std::string_view name) const;
  void InsertLine(size_t at, const std::string& line);

  std::string lineEnd_ = "\r\n";
  std::vector<Entry> entries_;
};

/// The data of a text value: the quoted form, or the bytes in hexadecimal where the text holds
/// control characters. The text ends at its first NUL.
std::string FormatRegistryText(std::string_view text);
std::string FormatRegistryNumber(uint32_t number);
/// None for data of another type, or of none.
std::optional<std::string> ParseRegistryText(std::string_view data);
std::optional<uint32_t> ParseRegistryNumber(std::string_view data);

}  // namespace gantry::platform
