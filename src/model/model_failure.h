#pragma once

#include <string_view>

#include "boundary/error_text.h"

namespace gantry {

/// A failed operation of the model: the text for the host, and the result.
inline int32_t Fail(ExtErrorBlock* err, std::string_view text) {
  SetErrorText(err, text);
  return 1;
}

/// The same for a failure of the connection, whose text stands between brackets.
inline int32_t FailWith(ExtErrorBlock* err, std::string_view doing, std::string_view reason) {
  return Fail(err, std::string(doing) + ": <" + std::string(reason) + ">");
}

}  // namespace gantry
