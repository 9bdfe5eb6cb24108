#include "remote/message_reader.h"

#include <algorithm>
#include <cstring>

namespace gantry {

std::span<const std::byte> MessageReader::Take(size_t size) {
  if (size > Remaining()) throw MessageOverrun();
  const std::span<const std::byte> taken = bytes_.subspan(position_, size);
  position_ += size;
  return taken;
}

void MessageReader::GetBytes(std::span<std::byte> target) {
  const std::span<const std::byte> taken = Take(target.size());
  std::copy(taken.begin(), taken.end(), target.begin());
}

std::string MessageReader::GetText() {
  const std::span<const std::byte> taken = Take(GetCount(1));
  const auto* text = reinterpret_cast<const char*>(taken.data());
  return {text, ::strnlen(text, taken.size())};
}

size_t MessageReader::GetCount(size_t leastSize) {
  const int32_t count = GetInt();
  if (count < 0) throw MessageOverrun();
  Require(static_cast<size_t>(count), leastSize);
  return static_cast<size_t>(count);
}

}  // namespace gantry
