// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf16.h"

#include <gtest/gtest.h>

namespace quillon::base {
namespace {

using namespace std::string_literals;

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
