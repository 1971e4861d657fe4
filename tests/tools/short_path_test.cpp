// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/short_path.h"

#include <gtest/gtest.h>

namespace quillon::tools {
namespace {

TEST(ShortName, MakesEightAndThree) {
  struct Case {
    const char* name;
    const char* expected;
  };
  const Case cases[] = {
      {"Tiff.tiff", "Tiff~1.tif"},
      {"Tiff.tif", "Tiff.tif"},
      {"12345678.jpg", "12345678.jpg"},
      {"123456789.jpg", "123456~1.jpg"},
      {"a b.jpg", "ab~1.jpg"},
      {"a.b.jpg", "ab~1.jpg"},
      {"a+b.jpg", "a_b~1.jpg"},
      {"[1].png", "_1_~1.png"},
      {"name", "name"},
      {"longername", "longer~1"},
      {".profile", "profil~1"},
      {"照片.jpeg", "照片~1.jpe"},
      {"一二三四五六七八.jpg", "一二三四五六七八.jpg"},
      {"一二三四五六七八九.jpg", "一二三四五六~1.jpg"},
  };
  for (const Case& c : cases) EXPECT_EQ(ShortName(c.name), c.expected);
  EXPECT_EQ(ShortPath("/a long folder/Tiff.tiff"), "/a long folder/Tiff~1.tif");
  EXPECT_EQ(ShortPath("Tiff.tiff"), "Tiff~1.tif");
  EXPECT_EQ(ShortPath("/a/Tiff.tiff", 2), "/a/Tiff~2.tif");
  EXPECT_EQ(ShortPath("/a/Tiff.tif", 2), "/a/Tiff.tif");
}

}  // namespace
}  // namespace quillon::tools
