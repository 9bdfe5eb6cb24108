#include "settings/case_archive.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "platform/files.h"

namespace gantry {

namespace {

// Frozen: every case that was ever saved begins with these two words.
constexpr uint32_t kStreamFormat = 1;
constexpr uint32_t kMagic = 0x385FD21A;

static_assert(std::endian::native == std::endian::little, "the stream is little-endian");

}  // namespace

CaseArchive::CaseArchive(std::span<char> block, Direction direction)
    : direction_(direction), block_(block) {
  if (!IsReading()) std::fill_n(block_.begin(), std::min<size_t>(4, block_.size()), '\0');
  TransferHeader();
}

CaseArchive::CaseArchive(platform::NativeFile& file, Direction direction)
    : direction_(direction), file_(&file) {
  TransferHeader();
}

void CaseArchive::TransferHeader() {
  uint32_t format = kStreamFormat;
  uint32_t magic = kMagic;
  Transfer(format);
  Transfer(magic);
  if (format != kStreamFormat || magic != kMagic) throw ArchiveError();
}

void CaseArchive::Transfer(int32_t& value) { TransferBytes(&value, sizeof value); }

void CaseArchive::Transfer(uint32_t& value) { TransferBytes(&value, sizeof value); }

void CaseArchive::Transfer(uint8_t& value) { TransferBytes(&value, sizeof value); }

void CaseArchive::Transfer(std::string& text) {
  if (text.size() > size_t{std::numeric_limits<int32_t>::max()}) throw ArchiveError();
  auto length = static_cast<int32_t>(text.size());
  const size_t start = position_;
  try {
    TransferCount(length);
    if (IsReading()) {
      if (static_cast<uint64_t>(length) > Remaining()) throw ArchiveError();
      text.resize(static_cast<size_t>(length));
    }
    TransferBytes(text.data(), text.size());
  } catch (const ArchiveError&) {
    position_ = start;
    throw;
  }
}

void CaseArchive::TransferCount(int32_t& count) {
  const size_t start = position_;
  Transfer(count);
  if (!IsReading() || count >= 0) return;
  position_ = start;
  throw ArchiveError();
}

uint64_t CaseArchive::Remaining() const {
  return file_ != nullptr ? file_->Remaining() : block_.size() - position_;
}

void CaseArchive::TransferBytes(void* bytes, size_t length) {
  if (file_ != nullptr) {
    const bool done = IsReading() ? file_->Read(bytes, length) : file_->Write(bytes, length);
    if (!done) throw ArchiveError();
    return;
  }
  if (length > Remaining()) throw ArchiveError();
  if (length == 0) return;
  char* place = block_.data() + position_;
  IsReading() ? std::memcpy(bytes, place, length) : std::memcpy(place, bytes, length);
  position_ += length;
}

}  // namespace gantry
