#include "text/checksum.h"

#include <cstdint>

namespace gantry {

std::string Checksum(std::string_view text) {
  constexpr uint64_t kBasis = 0xcbf29ce484222325;
  constexpr uint64_t kPrime = 0x100000001b3;
  uint64_t sum = kBasis;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * kPrime;
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) digits += "0123456789abcdef"[sum >> shift & 0xF];
  return digits;
}

}  // namespace gantry
