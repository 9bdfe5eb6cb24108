#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "client/wire_format.h"

namespace gantry {

/// Frames as the parts that go over the channel: each chunk behind the words that announce it. The
/// payloads must outlive it.
class GatheredFrames {
 public:
  void Add(std::span<const std::byte> payload) {
    const uint64_t total = payload.size();
    AddWords({total, std::min(total, wire::kChunkSize)}, 2);
    for (uint64_t offset = 0; offset < total; offset += wire::kChunkSize) {
      const uint64_t length = std::min(total, offset + wire::kChunkSize) - offset;
      if (offset != 0) AddWords({length}, 1);
      parts_.push_back(payload.subspan(offset, length));
    }
  }
  std::span<const std::span<const std::byte>> Parts() const { return parts_; }

 private:
  void AddWords(std::array<uint64_t, 2> words, size_t count) {
    parts_.push_back(std::as_bytes(std::span(words_.emplace_back(words)).first(count)));
  }

  std::deque<std::array<uint64_t, 2>> words_;  ///< none moves when more are added
  std::vector<std::span<const std::byte>> parts_;
};

}  // namespace gantry
