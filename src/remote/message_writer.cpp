#include "remote/message_writer.h"

namespace gantry {

MessageWriter& MessageWriter::PutBytes(std::span<const std::byte> bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

MessageWriter& MessageWriter::PutText(std::string_view text) {
  return PutInt(static_cast<int32_t>(text.size())).PutBytes(std::as_bytes(std::span(text)));
}

}  // namespace gantry
