#include "boundary/error_text.h"

#include <cstring>

#include <gtest/gtest.h>

namespace gantry {
namespace {

TEST(ErrorText, TakesATextOfAnyLengthAndIsCutToItsField) {
  const std::string name(5000, 'n');
  EXPECT_EQ(FormatText("<%s> %d", name.c_str(), 7), "<" + name + "> 7");
  ExtErrorBlock err;
  std::memset(&err, 'x', sizeof err);
  SetErrorText(&err, name);
  EXPECT_EQ(std::strlen(err.text), 259u);
  EXPECT_EQ(err.reserved, 0x78787878u);
  SetErrorText(nullptr, "lost");
  ClearErrorBlock(nullptr);
  CopyBounded({}, name);
}

}  // namespace
}  // namespace gantry
