// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>

namespace quillon::base {
namespace {

struct NumberCase {
  const char* text;
  double value;
};

constexpr NumberCase kNumbers[] = {
    {"0", 0},    {"12", 12},     {"-12", -12},           {"+12", 12},  {"1.5", 1.5},
    {".5", 0.5}, {"5.", 5},      {"-.25", -0.25},        {"+.5", 0.5}, {"007", 7},
    {" 7 ", 7},  {"\t7\r\n", 7}, {"\u300012\u3000", 12}, {"１２", 12}, {"－１．５", -1.5},
    {"＋３", 3}, {"-0", 0},
};

// Only the whole text of a user may have a decimal comma; LeadingNumber() ends there.
constexpr NumberCase kCommaNumbers[] = {{"1,5", 1.5}, {"0,125", .125}, {"-2，5", -2.5}, {"１。５", 1.5}};

constexpr const char* kNotNumbers[] = {
    "",      " ",   "abc",  "12px",  "1 2",    "1,500",  "1.2.3", "1e3",      "1E+2",   "12,000",   "1,5,5",
    "1,5.5", "--1", "++1",  "+-1",   "-+1",    "+",      "-",     ".",        "e5",     "1e",       "0x10",
    "inf",   "nan", "-inf", "1e999", "-1e999", "1e-999", "+ 1",   "１２像素", "\u3000", "infinity",
};

TEST(ParseNumber, ReadsAFiniteDecimalNumber) {
  for (const auto& [text, value] : kNumbers) {
    const auto parsed = ParseNumber(text);
    ASSERT_TRUE(parsed.has_value()) << "[" << text << "]";
    EXPECT_EQ(*parsed, value) << "[" << text << "]";
  }
}

TEST(ParseNumber, ReadsADecimalComma) {
  for (const auto& [text, value] : kCommaNumbers) EXPECT_EQ(ParseNumber(text), value) << "[" << text << "]";
}

TEST(ParseNumber, RefusesEverythingElse) {
  for (const char* text : kNotNumbers) EXPECT_EQ(ParseNumber(text), std::nullopt) << "[" << text << "]";
}

TEST(ParseNumber, StopsAtNoByteInsideTheText) {
  EXPECT_EQ(ParseNumber(std::string_view("1\0", 2)), std::nullopt);
  EXPECT_EQ(ParseNumber(std::string_view("12345").substr(0, 2)), 12.0);
}

TEST(ParseMeasure, ReadsTheUnitAfterTheNumber) {
  const std::tuple<const char*, double, Unit> cases[] = {
      {"12", 12, Unit::None},           {"35mm", 35, Unit::Millimetre}, {"3.5 cm", 3.5, Unit::Centimetre},
      {"3,5CM", 3.5, Unit::Centimetre}, {"2in", 2, Unit::Inch},         {"2\"", 2, Unit::Inch},
      {"10%", 10, Unit::Percent},       {"１０％", 10, Unit::Percent},  {"40px", 40, Unit::Pixel},
      {"40像素", 40, Unit::Pixel},      {"5毫米", 5, Unit::Millimetre}, {" 1 厘米 ", 1, Unit::Centimetre},
      {"1英寸", 1, Unit::Inch},
  };
  for (const auto& [text, value, unit] : cases) {
    const auto measure = ParseMeasure(text);
    ASSERT_TRUE(measure.has_value()) << text;
    EXPECT_EQ(measure->value, value) << text;
    EXPECT_EQ(measure->unit, unit) << text;
  }
  for (const char* text : {"", "mm", "10 foot", "10%%", "1e3mm", "10mm5", "1,500mm"}) {
    EXPECT_FALSE(ParseMeasure(text).has_value()) << text;
  }
}

TEST(ShortNumberText, HasSixSignificantDigits) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {12.345678, "12.3457"},
      {-12.345678, "-12.3457"},
      {0.000123456789, "0.000123457"},
      {33.1, "33.1"},
      {1234567, "1234567"},
      {1234567.8, "1234568"},
      {999999.9, "1000000"},
      {123456.7, "123457"},
      {1.0 / 3, "0.333333"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(ShortNumberText(value), text) << value;
}

TEST(ParseInteger, ReadsAWholeNumberThatFits) {
  const std::pair<const char*, int> cases[] = {
      {"0", 0},
      {"7", 7},
      {"+7", 7},
      {"-7", -7},
      {" 7\t", 7},
      {"007", 7},
      {"１０６２", 1062},
      {"－３", -3},
      {"\u30005", 5},
      {"2147483647", 2147483647},
      {"-2147483648", std::numeric_limits<int>::min()},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(ParseInteger(text), value) << "[" << text << "]";
}

TEST(ParseInteger, RefusesFractionsExponentsAndWhatDoesNotFit) {
  for (const char* text : {"1.0", "1.", ".5", "1e3", "2147483648", "-2147483649", "99999999999999999999", "0x10"}) {
    EXPECT_EQ(ParseInteger(text), std::nullopt) << "[" << text << "]";
  }
  for (const char* text : kNotNumbers) EXPECT_EQ(ParseInteger(text), std::nullopt) << "[" << text << "]";
}

TEST(LeadingNumber, ReadsTheNumberAtTheHead) {
  const NumberCase cases[] = {
      {"12px", 12},   {"1.5.2", 1.5}, {"  8 cm", 8},   {"-3,5", -3}, {"１２像素", 12}, {"+4x", 4},
      {"1e2e3", 100}, {"5e", 5},      {"300DPI", 300}, {"7-8", 7},   {".5x", 0.5},     {"2147483648", 2147483648.0},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(LeadingNumber(text), value) << "[" << text << "]";
  for (const auto& [text, value] : kNumbers) EXPECT_EQ(LeadingNumber(text), value) << "[" << text << "]";
}

TEST(LeadingNumber, IsZeroIfThereIsNone) {
  for (const char* text : {"", "abc", "px12", "-", "--1", ".", "inf", "nan", "1e999", "\u3000"}) {
    EXPECT_EQ(LeadingNumber(text), 0.0) << "[" << text << "]";
  }
}

TEST(NumberText, IsTheShortestDecimalText) {
  const std::pair<double, const char*> cases[] = {
      {1, "1"},
      {-1, "-1"},
      {0.1, "0.1"},
      {2.5, "2.5"},
      {100, "100"},
      {1062, "1062"},
      {1e-7, "0.0000001"},
      {0.1 + 0.2, "0.30000000000000004"},
      {11.811, "11.811"},
      {1.0 / 3, "0.3333333333333333"},
      {-0.25, "-0.25"},
      {123456789012345, "123456789012345"},
      {999999999999999, "999999999999999"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(NumberText(value), text);
}

TEST(NumberText, IsZeroForBothZerosAndForWhatIsNoNumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {0.0, -0.0, kInfinity, -kInfinity, std::nan("")}) EXPECT_EQ(NumberText(value), "0");
}

TEST(NumberText, ReadsBackAsTheSameNumber) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  std::uniform_int_distribution<int> exponent(-300, 300);
  for (int i = 0; i < 20000; ++i) {
    const double value = mantissa(random) * std::pow(10.0, exponent(random));
    EXPECT_EQ(LeadingNumber(NumberText(value)), value);
  }
  for (const double value : {DBL_MAX, -DBL_MAX, DBL_MIN, DBL_TRUE_MIN, 1e15, 1e15 - 0.125}) {
    EXPECT_EQ(LeadingNumber(NumberText(value)), value);
  }
}

TEST(NumberText, HasNoExponentBelowTenToTheFifteenth) {
  for (const double value : {1e14, 999999999999999.9, 1e-5, 1e-300, -1e14}) {
    EXPECT_EQ(NumberText(value).find('e'), std::string::npos) << value;
  }
}

TEST(ToHalfWidth, TurnsEveryFullWidthFormIntoItsAsciiTwin) {
  for (char32_t code = 0xFF01; code <= 0xFF5E; ++code) {
    const std::string wide = {static_cast<char>(0xE0 | (code >> 12)), static_cast<char>(0x80 | ((code >> 6) & 0x3F)),
                              static_cast<char>(0x80 | (code & 0x3F))};
    EXPECT_EQ(ToHalfWidth(wide), std::string(1, static_cast<char>(code - 0xFEE0)));
  }
  EXPECT_EQ(ToHalfWidth("\u3000"), " ");
  EXPECT_EQ(ToHalfWidth("ＴＣｕｔ（３）＝１．５～"), "TCut(3)=1.5~");
}

TEST(ToHalfWidth, LeavesAllOtherBytes) {
  // The neighbours of the range, other characters, broken sequences and sequences cut short.
  for (const std::string text : {"", "abc 123", "裁剪", "\uFF00", "\uFF5F", "\u3001", "\xEF\xBC",
                                 "\xEF\xBC"
                                 "A",
                                 "\xEF\xBD\xFF", "\xEF", "\xE3\x80", "\xFF\xFE", "é"}) {
    EXPECT_EQ(ToHalfWidth(text), text);
  }
  EXPECT_EQ(ToHalfWidth(std::string("a\0１", 5)), std::string("a\0"
                                                              "1",
                                                              3));
}

}  // namespace
}  // namespace quillon::base
