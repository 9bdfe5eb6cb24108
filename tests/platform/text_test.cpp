#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/command_line.h"

namespace gantry::platform {
namespace {

TEST(Text, ComparesWithoutRegardToCaseInTheCLocale) {
  EXPECT_TRUE(EqualNoCase("IsRunning", "iSrUNNING"));
  EXPECT_TRUE(EqualNoCase("", ""));
  EXPECT_FALSE(EqualNoCase("Well", "Wel"));
  EXPECT_FALSE(EqualNoCase("@[", "`{"));
  EXPECT_FALSE(EqualNoCase("\xC4", "\xE4"));
}

TEST(Text, TurnsEveryByteOfTheCodePageIntoUtf8) {
  EXPECT_EQ(CodePageToUtf8("\x80\x8E\x99\x9F"), "\u20AC\u017D\u2122\u0178");
  EXPECT_EQ(CodePageToUtf8("A\x7F\xA0\xE4\xFF"), "A\x7F\u00A0\u00E4\u00FF");
  EXPECT_EQ(CodePageToUtf8("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  // 128 characters of one byte, 111 of two, 17 of three.
  EXPECT_EQ(CodePageToUtf8(all).size(), 128u + 2 * 111u + 3 * 17u);
  EXPECT_EQ(Utf8ToCodePage(CodePageToUtf8(all)), all);
}

TEST(Text, DoesntKeepWhatTheCodePageLacks) {
  for (const char* text : {"\u0416", "a\u2260b", "\U0001F6E2", "\xE9", "\xE2\x82"}) {
    EXPECT_NE(CodePageToUtf8(Utf8ToCodePage(text)), text);
  }
}

TEST(Text, TellsUtf8FromOtherBytes) {
  for (const char* text : {"", "plain", "\u20AC\u00E9", "\U0001F6E2"}) EXPECT_TRUE(IsUtf8(text));
  for (const char* text : {"\xE9", "d\xE9p\xF4t", "\xE2\x82", "\x80", "\xC3(", "\xFF"}) {
    EXPECT_FALSE(IsUtf8(text)) << text;
  }
}

TEST(CommandLine, IsSplitAtBlanksOutsideQuotes) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(SplitCommandLine(R"("/opt/a b/ix"  base	--dopt=x:1 )"),
            (Words{"/opt/a b/ix", "base", "--dopt=x:1"}));
  EXPECT_EQ(SplitCommandLine(R"(a"b c"d "" $HOME;* \x)"), (Words{"ab cd", "", "$HOME;*", "\\x"}));
  EXPECT_EQ(SplitCommandLine(R"(x "never closed )"), (Words{"x", "never closed "}));
  EXPECT_EQ(SplitCommandLine("  "), Words{});
}

}  // namespace
}  // namespace gantry::platform
