#pragma once

#include <span>
#include <string>
#include <string_view>

#include "boundary/records.h"

namespace gantry {

/// Formats as the C library's printf does, into a text of whatever length it takes.
[[gnu::format(printf, 1, 2)]] std::string FormatText(const char* format, ...);

/// Copies `text` into a fixed field: cut to fit, always terminated, nothing written past the field.
/// An empty field is left alone.
void CopyBounded(std::span<char> field, std::string_view text);

/// Puts `text` into the host's error block, cut to its 260 bytes. A null block is left alone.
void SetErrorText(ExtErrorBlock* err, std::string_view text);

/// Clears all bytes of the block, if there is one.
void ClearErrorBlock(ExtErrorBlock* err);

}  // namespace gantry
