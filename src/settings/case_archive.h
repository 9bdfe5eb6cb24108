#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace gantry {

namespace platform {
class NativeFile;
}

/// The one failure of an archive: a short block or file, or a header that isn't its own.
class ArchiveError : public std::runtime_error {
 public:
  ArchiveError() : std::runtime_error("file failure") {}
};

/// The binary stream of the case data and the model state file, over a block of memory or an open
/// file: little-endian, with a two-word header. docs/case-data.md shows the format.
/// Every transfer works in the archive's direction. Throws ArchiveError and leaves the position.
class CaseArchive {
 public:
  enum class Direction : int32_t { kWrite = 0, kRead = 1 };

  /// Writes the header, or reads and checks it.
  CaseArchive(std::span<char> block, Direction direction);
  CaseArchive(platform::NativeFile& file, Direction direction);

  bool IsReading() const { return direction_ == Direction::kRead; }

  void Transfer(int32_t& value);
  void Transfer(uint32_t& value);
  void Transfer(uint8_t& value);
  void Transfer(std::string& text);
  /// How many items follow: a negative number is an ArchiveError. It may be more than there are, so
  /// a reader takes them one by one and sets nothing aside for them.
  void TransferCount(int32_t& count);
  /// A list: the count, then each item as `transfer` does it. On a read they are appended, each
  /// once it is whole.
  template <class List, class Transfer>
  void TransferList(List& items, Transfer transfer) {
    auto count = static_cast<int32_t>(items.end() - items.begin());
    TransferCount(count);
    if (!IsReading()) {
      for (auto& item : items) transfer(item);
      return;
    }
    for (; count > 0; --count) {
      typename List::value_type item{};
      transfer(item);
      items.push_back(std::move(item));
    }
  }

 private:
  void TransferBytes(void* bytes, size_t length);
  uint64_t Remaining() const;
  void TransferHeader();

  Direction direction_;
  std::span<char> block_;
  size_t position_ = 0;
  platform::NativeFile* file_ = nullptr;
};

}  // namespace gantry
