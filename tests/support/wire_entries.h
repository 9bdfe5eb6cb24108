#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace gantry::test {

/// The external-controller protocol written down a second time, apart from the driver's codec, so
/// that neither can hide a fault of the other. Bytes are kept as strings.
struct Marker {
  uint64_t count = 0;
  bool operator==(const Marker&) const = default;
};
using Ints = std::vector<int32_t>;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

struct Entry {
  Entry(std::string entryName, std::variant<Marker, Ints, Numbers, Texts> entryData = Marker{})
      : name(std::move(entryName)), data(std::move(entryData)) {}
  Entry(const char* entryName) : Entry(std::string(entryName)) {}

  bool operator==(const Entry&) const = default;

  std::string name;
  std::variant<Marker, Ints, Numbers, Texts> data;
};

/// A message: {"SET", "SETWELLS", {"VALUES", Numbers{0.5}}, "END"}.
using Entries = std::vector<Entry>;

/// What every entry of that name holds, in their order.
template <class T>
std::vector<T> FindAll(const Entries& entries, const std::string& name) {
  std::vector<T> found;
  for (const Entry& entry : entries) {
    if (entry.name == name) found.push_back(std::get<T>(entry.data));
  }
  return found;
}

/// What the first entry of that name holds; nothing without one.
template <class T>
T Find(const Entries& entries, const std::string& name) {
  const std::vector<T> found = FindAll<T>(entries, name);
  return found.empty() ? T{} : found.front();
}

/// A 64-bit word as it stands on the wire.
std::string Word(uint64_t value);
/// An entry's header alone, with any count and tag.
std::string HeaderBytes(const std::string& name, uint64_t count, const std::string& tag);
std::string Payload(const Entries& entries);
/// A payload cut into chunks of 65536 bytes.
std::string FrameOf(const std::string& payload);
std::string Frame(const Entries& entries);

/// Throws runtime_error for a payload that breaks the format.
Entries Decode(const std::string& payload);
/// For a reader: SET SETWELLS VALUES{0.5} END.
std::string Describe(const Entries& entries);
/// A message from its text, in which the brackets tell the type: WELNAMES{P1, P2} are texts,
/// VALUES[0.5] numbers and NPOINTS<2> integers. No text in it holds a brace; "" is an empty one.
Entries Parse(const std::string& text);

/// Where a simulator stands in its run.
Entries Step(const std::string& position, double days = 0.0,
             const Ints& date = {2020, 1, 1, 0, 0, 0});

}  // namespace gantry::test
