// Numbers read and print as the C library's do: those of numbers.cases, over which a conversion
// might trip, and random ones.

#include "text/number_text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "support/cases.h"

namespace gantry::test {
namespace {

void ExpectReadAsTheCLibraryDoes(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  const double expected = end == text.c_str() ? 0.0 : number;  // some give -0 for none
  const double actual = ReadDouble(text);
  EXPECT_TRUE(std::isnan(expected)
                  ? std::isnan(actual)
                  : std::bit_cast<uint64_t>(actual) == std::bit_cast<uint64_t>(expected))
      << text << ": " << actual;
  using Limits = std::numeric_limits<int32_t>;
  const long wide = std::strtol(text.c_str(), nullptr, 10);
  EXPECT_EQ(ReadInteger(text), std::clamp<long>(wide, Limits::min(), Limits::max())) << text;
}

TEST(NumberText, IsReadAsByTheCLibrary) {
  ExpectCases(GANTRY_NUMBER_CASES, {{"number", [](const Columns& c) {
                                       ExpectReadAsTheCLibraryDoes(c[0]);
                                       return Columns{};
                                     }}});
  std::mt19937 random(1);
  constexpr std::string_view kCharacters = "0123456789.eE+-xpinfa \t";
  std::uniform_int_distribution<size_t> character(0, kCharacters.size() - 1);
  for (size_t i = 0; i < 20000; ++i) {
    std::string text(1 + i % 12, ' ');
    std::ranges::generate(text, [&] { return kCharacters[character(random)]; });
    ExpectReadAsTheCLibraryDoes(text);
  }
}

TEST(NumberText, PrintsADoubleAsTheCLibraryDoes) {
  std::vector<double> values = {0.0,      -0.0,   1.0,        0.1,    1e5,     1e6,
                                123456.7, 3.4e35, -9999.9999, 5e-324, INFINITY};
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
}  // namespace gantry::test
