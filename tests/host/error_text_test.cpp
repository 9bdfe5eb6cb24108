#include "host/boundary/error_text.h"

#include <cstring>

#include <gtest/gtest.h>

namespace gantry {
namespace {

TEST(ErrorText, IsCutToItsFieldAndAlwaysTerminated) {
  ExtErrorBlock err;
  std::memset(&err, 'x', sizeof err);
  SetErrorText(&err, std::string(1000, 'e'));
  EXPECT_EQ(std::strlen(err.text), 259u);
  EXPECT_EQ(err.reserved, 0x78787878u);
}

TEST(ErrorText, FormatsTextsOfAnyLength) {
  const std::string name(5000, 'n');
  EXPECT_EQ(FormatText("<%s> %d", name.c_str(), 7), "<" + name + "> 7");
}

TEST(ErrorText, LeavesAMissingBlockAlone) {
  SetErrorText(nullptr, "lost");
  ClearErrorBlock(nullptr);
}

}  // namespace
}  // namespace gantry
