#include "text/number_text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

namespace gantry {
namespace {

/// Texts that a conversion might trip over, and random ones of the characters that matter to it.
std::vector<std::string> NumberTexts() {
  std::vector<std::string> texts = {"", " \t\n12abc", "\v-7"};
  std::istringstream words(
      "0 -0 100 +5 --5 +-5 - 1.5e3 1e 1e+ .5 5. . 0x1p3 0x 0xg 0x-1 0xinf -0x. 1e999 -1e999 1e-999 "
      "4.9e-324 1e-310 1e2147 1,5 inf nan abc 1e99999 1e-999999 0x1p99999 0x1p-99999 0x.p1 1e+-5 "
      "INF1 9|8 2147483647 2147483648 -2147483648 -2147483649 99999999999999999999999999");
  for (std::string word; words >> word;) texts.push_back(word);
  texts.push_back(std::string(400, '9') + "e-50");
  texts.push_back("0." + std::string(400, '0') + "1e50");
  texts.push_back("1e-" + std::string(30, '9'));
  texts.push_back("1e" + std::string(30, '9'));
  texts.push_back("0x" + std::string(400, 'f') + "p-450");
  std::mt19937 random(1);
  constexpr std::string_view kCharacters = "0123456789.eE+-xpinfa \t";
  std::uniform_int_distribution<size_t> character(0, kCharacters.size() - 1);
  std::uniform_int_distribution<size_t> length(1, 12);
  for (int i = 0; i < 20000; ++i) {
    std::string text(length(random), ' ');
    std::generate(text.begin(), text.end(), [&] { return kCharacters[character(random)]; });
    texts.push_back(text);
  }
  return texts;
}

TEST(NumberText, ReadsADoubleAsTheCLibraryDoes) {
  for (const std::string& text : NumberTexts()) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    const double expected = end == text.c_str() ? 0.0 : number;  // some give -0 for none
    const double actual = ReadDouble(text);
    if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(actual)) << text;
    } else {
      EXPECT_EQ(std::bit_cast<uint64_t>(actual), std::bit_cast<uint64_t>(expected)) << text;
    }
  }
}

TEST(NumberText, ReadsAnIntegerAsTheCLibraryDoesAndKeepsItWithin32Bits) {
  using Limits = std::numeric_limits<int32_t>;
  for (const std::string& text : NumberTexts()) {
    const long wide = std::strtol(text.c_str(), nullptr, 10);
    EXPECT_EQ(ReadInteger(text), std::clamp<long>(wide, Limits::min(), Limits::max())) << text;
  }
}

TEST(NumberText, PrintsADoubleAsTheCLibraryDoes) {
  std::vector<double> values = {0.0, -0.0,     1.0,    0.1,        1e5,
                                1e6, 123456.7, 3.4e35, -9999.9999, 5e-324};
  values.push_back(std::numeric_limits<double>::infinity());
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) values.push_back(std::bit_cast<double>(random()));
  for (const double value : values) {
    if (std::isnan(value)) continue;  // whose sign not every library prints
    char expected[64];
    std::snprintf(expected, sizeof expected, "%g", value);
    EXPECT_EQ(FormatDouble(value), expected);
  }
}

}  // namespace
}  // namespace gantry
