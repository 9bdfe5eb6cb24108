// What anybody may say to the run factory: in one piece and byte by byte it must come to the same.

#include <cstdlib>
#include <string_view>

#include "runfactory/dialogue.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using gantry::cluster::Dialogue;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Dialogue whole;
  const Dialogue::State state = whole.Take(bytes);
  Dialogue slow;
  for (size_t i = 0; i < size; ++i) slow.Take(bytes.substr(i, 1));
  const bool isSame = slow.Take({}) == state && slow.Refusal() == whole.Refusal() &&
                      slow.Fault() == whole.Fault() &&
                      slow.Request().directory == whole.Request().directory;
  if (!isSame) std::abort();
  return 0;
}
