// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"

#include <gtest/gtest.h>

namespace quillon::base {
namespace {

using namespace std::string_literals;

const std::string kMark = "\uFFFD";

std::string Marks(int count) {
  std::string marks;
  for (int i = 0; i < count; ++i) marks += kMark;
  return marks;
}

TEST(Utf8, KeepsWellFormedText) {
  // The first and the last character of each length, and those next to the surrogates.
  for (const std::string text : {"", "plain", "裁剪 100%", "\x7F", "\u0080", "\u07FF", "\u0800", "\uFFFF", "\uD7FF",
                                 "\uE000", "\U00010000", "\U0010FFFF", "😀"}) {
    EXPECT_TRUE(IsUtf8(text));
    EXPECT_EQ(DisplayText(text), text);
  }
  const std::string withNul("a\0b", 3);
  EXPECT_TRUE(IsUtf8(withNul));
  EXPECT_EQ(DisplayText(withNul), withNul);
}

struct BrokenCase {
  const char* what;
  std::string bytes;
  std::string shown;
};

TEST(Utf8, MarksEveryByteThatStartsNoSequence) {
  const BrokenCase cases[] = {
      {"lone continuation", "\x80", Marks(1)},
      {"GBK name", "\xC4\xE3\xBA\xC3.jpg", Marks(4) + ".jpg"},
      {"overlong, two bytes", "\xC0\xAF", Marks(2)},
      {"overlong, two bytes, C1", "\xC1\xBF", Marks(2)},
      {"overlong, three bytes", "\xE0\x9F\xBF", Marks(3)},
      {"overlong, four bytes", "\xF0\x8F\xBF\xBF", Marks(4)},
      {"surrogate", "\xED\xA0\x80", Marks(3)},
      {"beyond the last character", "\xF4\x90\x80\x80", Marks(4)},
      {"lead byte that never occurs", "\xF5\x80\x80\x80", Marks(4)},
      {"bytes that never occur", "\xFE\xFF", Marks(2)},
      {"cut short, two", "a\xC3", "a" + Marks(1)},
      {"cut short, three", "a\xE8\xA3", "a" + Marks(2)},
      {"cut short, four", "a\xF0\x9F\x98", "a" + Marks(3)},
      {"broken in the middle",
       "\xE8"
       "A\x81",
       Marks(1) + "A" + Marks(1)},
      {"good text goes on", "\xFF裁", Marks(1) + "裁"},
  };
  for (const auto& broken : cases) {
    EXPECT_FALSE(IsUtf8(broken.bytes)) << broken.what;
    EXPECT_EQ(DisplayText(broken.bytes), broken.shown) << broken.what;
  }
}

TEST(Utf8, ShownTextIsAlwaysWellFormed) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const std::string bytes = {'\xE8', static_cast<char>(a), static_cast<char>(b), '\xF0', static_cast<char>(b)};
      EXPECT_TRUE(IsUtf8(DisplayText(bytes))) << a << " " << b;
    }
  }
}

TEST(Utf16WithMark, HoldsEveryLetter) {
  EXPECT_EQ(Utf16WithMark(""), "\xFF\xFE");
  EXPECT_EQ(Utf16WithMark("a\n"),
            "\xFF\xFE"
            "a\0\n\0"s);
  EXPECT_EQ(Utf16WithMark("é"), "\xFF\xFE\xE9\0"s);
  EXPECT_EQ(Utf16WithMark("中"), "\xFF\xFE\x2D\x4E"s);
  EXPECT_EQ(Utf16WithMark("😀"), "\xFF\xFE\x3D\xD8\x00\xDE"s);
}

TEST(Utf16WithMark, EndsAtBadBytes) {
  EXPECT_EQ(Utf16WithMark("a\xFF"
                          "b"),
            "\xFF\xFE"
            "a\0"s);
  EXPECT_EQ(Utf16WithMark("a\xE4\xB8"),
            "\xFF\xFE"
            "a\0"s);
}

}  // namespace
}  // namespace quillon::base
