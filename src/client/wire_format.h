#pragma once

// The numbers of the external-controller protocol's format, frozen (docs/wire-protocol.md), and its
// headers as bytes.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "client/message_stream.h"

namespace gantry::wire {

inline constexpr uint64_t kChunkSize = 65536;  ///< at which a sender cuts
inline constexpr uint64_t kLongestName = 255;  ///< of an entry
inline constexpr uint64_t kTagSize = 4;
inline constexpr uint64_t kHeaderSizeWithoutName = 13;  ///< name length, count, tag

/// What a reader finds storage for on the word of a frame's header alone. Not part of the format.
inline constexpr uint64_t kLargestUnprovenFrame = kChunkSize;

/// The tags by the values of `HeaderType`.
inline constexpr std::array<std::string_view, 4> kTags = {"MESS", "DOUB", "INTE", "CSTR"};

/// A header as it stands in a message, its name a literal of this size.
template <size_t NameSize>
using HeaderBytes = std::array<std::byte, NameSize - 1 + kHeaderSizeWithoutName>;

/// Writes a header over `target`, which must be as long.
void EncodeHeader(const Header& header, std::span<std::byte> target);

template <size_t NameSize>
HeaderBytes<NameSize> EncodeHeader(const char (&name)[NameSize], uint64_t count, HeaderType type) {
  HeaderBytes<NameSize> bytes;
  EncodeHeader({name, count, type}, bytes);
  return bytes;
}

static_assert(std::endian::native == std::endian::little,
              "the format is little-endian and nothing here swaps bytes");

}  // namespace gantry::wire
