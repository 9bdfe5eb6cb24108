#include "remote/message_writer.h"

namespace gantry {

void MessageWriter::PutInt(int32_t value) { PutBytes(std::as_bytes(std::span(&value, 1))); }

void MessageWriter::PutDouble(double value) { PutBytes(std::as_bytes(std::span(&value, 1))); }

void MessageWriter::PutByte(uint8_t value) { bytes_.push_back(std::byte{value}); }

void MessageWriter::PutBytes(std::span<const std::byte> bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void MessageWriter::PutText(std::string_view text) {
  PutInt(static_cast<int32_t>(text.size()));
  PutBytes(std::as_bytes(std::span(text)));
}

void MessageWriter::PutIntArray(std::span<const int32_t> values) {
  PutBytes(std::as_bytes(values));
}

void MessageWriter::PutDoubleArray(std::span<const double> values) {
  PutBytes(std::as_bytes(values));
}

}  // namespace gantry
