#include "inflowcalc/state_block.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "inflowcalc/drainage_transform.h"

namespace gantry::inflow {
namespace {

// The format is frozen.
constexpr std::array<char, 4> kMagic = {'I', 'P', 'R', 'S'};
constexpr uint32_t kVersion = 1;
constexpr uint32_t kLongestBody = 64u << 20;

struct BlockHead {
  std::array<char, 4> magic = kMagic;
  uint32_t version = kVersion;
  uint32_t bodyLength = 0;
  uint32_t checksum = 0;
};
static_assert(sizeof(BlockHead) == 16);

/// FNV-1a, 32 bits (Fowler, Noll and Vo, 1991).
uint32_t Checksum(std::span<const std::byte> bytes) {
  uint32_t sum = 2166136261u;
  for (const std::byte byte : bytes) sum = (sum ^ std::to_integer<uint32_t>(byte)) * 16777619u;
  return sum;
}

void Append(std::vector<std::byte>& bytes, const void* from, size_t length) {
  const auto* first = static_cast<const std::byte*>(from);
  bytes.insert(bytes.end(), first, first + length);
}

template <class T>
void AppendValue(std::vector<std::byte>& bytes, T value) {
  Append(bytes, &value, sizeof value);
}

std::vector<std::byte> ComposeBody(const WellRatios& ratios) {
  std::vector<std::byte> body;
  AppendValue(body, static_cast<uint32_t>(ratios.size()));
  for (const auto& [name, ratio] : ratios) {
    AppendValue(body, static_cast<uint32_t>(name.size()));
    Append(body, name.data(), name.size());
    AppendValue(body, ratio);
  }
  return body;
}

/// Takes values off the front of a body; false once it has run out.
class BodyReader {
 public:
  explicit BodyReader(std::span<const std::byte> body) : rest_(body) {}

  template <class T>
  bool Take(T& value) {
    if (rest_.size() < sizeof value) return false;
    std::memcpy(&value, rest_.data(), sizeof value);
    rest_ = rest_.subspan(sizeof value);
    return true;
  }

  bool TakeText(uint32_t length, std::string& text) {
    if (rest_.size() < length) return false;
    text.assign(reinterpret_cast<const char*>(rest_.data()), length);
    rest_ = rest_.subspan(length);
    return true;
  }

  bool IsAtEnd() const { return rest_.empty(); }

 private:
  std::span<const std::byte> rest_;
};

bool ReadWell(BodyReader& body, WellRatios& ratios) {
  uint32_t length = 0;
  std::string name;
  double ratio = 0.0;
  if (!body.Take(length) || !body.TakeText(length, name) || !body.Take(ratio)) return false;
  if (!(ratio >= kLeastRatio && ratio <= kGreatestRatio)) return false;
  return ratios.emplace(std::move(name), ratio).second;
}

std::optional<WellRatios> ReadBody(std::span<const std::byte> bytes) {
  BodyReader body(bytes);
  uint32_t count = 0;
  if (!body.Take(count)) return std::nullopt;
  WellRatios ratios;
  for (uint32_t i = 0; i < count; ++i) {
    if (!ReadWell(body, ratios)) return std::nullopt;
  }
  if (!body.IsAtEnd()) return std::nullopt;
  return ratios;
}

/// The head at the file's position, if a block can begin here: the right mark, and a body that the
/// file has room for.
std::optional<BlockHead> ReadHead(const CallersFile& file, int64_t start) {
  BlockHead head;
  if (!file.Read(std::as_writable_bytes(std::span(&head, 1)))) return std::nullopt;
  const int64_t room = file.Length() - start - static_cast<int64_t>(sizeof head);
  if (head.magic != kMagic || head.bodyLength > kLongestBody || head.bodyLength > room)
    return std::nullopt;
  return head;
}

}  // namespace

bool SaveState(const WellRatios& ratios, const CallersFile& file) {
  const std::vector<std::byte> body = ComposeBody(ratios);
  if (body.size() > kLongestBody) return false;
  BlockHead head;
  head.bodyLength = static_cast<uint32_t>(body.size());
  head.checksum = Checksum(body);

  std::vector<std::byte> block;
  block.reserve(sizeof head + body.size());
  AppendValue(block, head);
  Append(block, body.data(), body.size());
  return file.Write(block);
}

std::optional<WellRatios> LoadState(const CallersFile& file) {
  const int64_t start = file.Position();
  if (start < 0) return std::nullopt;
  const std::optional<BlockHead> head = ReadHead(file, start);
  std::vector<std::byte> body(head ? head->bodyLength : 0);
  if (!head || !file.Read(body)) {
    file.MoveTo(start);
    return std::nullopt;
  }
  if (head->version != kVersion || head->checksum != Checksum(body)) return std::nullopt;
  return ReadBody(body);
}

}  // namespace gantry::inflow
