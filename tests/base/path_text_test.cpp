// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"

#include <gtest/gtest.h>

namespace quillon::base {
namespace {

struct SplitCase {
  const char* path;
  const char* folder;
  const char* name;
  const char* extension;
};

TEST(SplitPath, GivesFolderNameAndExtension) {
  const SplitCase cases[] = {
      {"", "", "", ""},
      {"a", "", "a", ""},
      {"a.jpg", "", "a", "jpg"},
      {"/", "/", "", ""},
      {"/a.jpg", "/", "a", "jpg"},
      {"/home/x/a.jpg", "/home/x", "a", "jpg"},
      {"x/a.jpg", "x", "a", "jpg"},
      {"x/", "x", "", ""},
      {"/照片 1/人像.tif", "/照片 1", "人像", "tif"},
      {"/a.b/c", "/a.b", "c", ""},
      {"/a.b/c.d.JPG", "/a.b", "c.d", "JPG"},
      {"/x/.hidden", "/x", ".hidden", ""},
      {"/x/.hidden.png", "/x", ".hidden", "png"},
      {"/x/a.", "/x", "a", ""},
      {"/x/a..b", "/x", "a.", "b"},
      {"/x/.", "/x", ".", ""},
      {"/x/..", "/x", "..", ""},
      {"..", "", "..", ""},
      {"x//a.jpg", "x", "a", "jpg"},
      {"//a.jpg", "/", "a", "jpg"},
      {"///", "/", "", ""},
      {"/x/-a [1] %d.jpg", "/x", "-a [1] %d", "jpg"},
      {"/x/\xC4\xE3.jpg", "/x", "\xC4\xE3", "jpg"},
      {"/x/a\n.jpg", "/x", "a\n", "jpg"},
  };
  for (const auto& expected : cases) {
    const PathParts parts = SplitPath(expected.path);
    EXPECT_EQ(parts.folder, expected.folder) << expected.path;
    EXPECT_EQ(parts.name, expected.name) << expected.path;
    EXPECT_EQ(parts.extension, expected.extension) << expected.path;
  }
}

TEST(JoinPath, IsTheInverseOfSplitPath) {
  for (const char* path :
       {"a", "a.jpg", "/a.jpg", "/home/x/a.jpg", "x/a.jpg", "/a.b/c", "/x/.hidden", "/x/..", "/x/."}) {
    const PathParts parts = SplitPath(path);
    EXPECT_EQ(JoinPath(parts.folder, parts.name, parts.extension), path);
  }
}

TEST(JoinPath, DoublesNoSeparatorAndAddsNoLonePoint) {
  EXPECT_EQ(JoinPath("/", "a", "jpg"), "/a.jpg");
  EXPECT_EQ(JoinPath("/x", "a", ""), "/x/a");
  EXPECT_EQ(JoinPath("/x/", "a", "jpg"), "/x/a.jpg");
  EXPECT_EQ(JoinPath("", "a", "jpg"), "a.jpg");
  EXPECT_EQ(JoinPath("/", "b"), "/b");
  EXPECT_EQ(JoinPath("/x", "b"), "/x/b");
  EXPECT_EQ(JoinPath("/x/", "b"), "/x/b");
  EXPECT_EQ(JoinPath("", "b"), "b");
}

TEST(TrimTrailingSeparator, KeepsTheRoot) {
  const std::pair<const char*, const char*> cases[] = {{"", ""},      {"/", "/"},      {"//", "/"},    {"/x", "/x"},
                                                       {"/x/", "/x"}, {"/x///", "/x"}, {"x/y/", "x/y"}};
  for (const auto& [path, trimmed] : cases) EXPECT_EQ(TrimTrailingSeparator(path), trimmed);
}

TEST(AsciiCase, ChangesLettersAndNothingElse) {
  EXPECT_EQ(ToLowerAscii("AZaz09@[`{.JPG"), "azaz09@[`{.jpg");
  EXPECT_EQ(ToUpperAscii("AZaz09@[`{.jpg"), "AZAZ09@[`{.JPG");
  const std::string others = "É裁剪\xC4\xE3\xFF";
  EXPECT_EQ(ToLowerAscii(others), others);
  EXPECT_EQ(ToUpperAscii(others), others);
  EXPECT_EQ(ToUpperAscii(std::string_view("a\0b", 3)), std::string("A\0B", 3));
}

TEST(NumberedName, HasTheSameDigitsInEveryPart) {
  EXPECT_EQ(NumberedName("a", 1, 1), "a_01");
  EXPECT_EQ(NumberedName("a.b", 9, 99), "a.b_09");
  EXPECT_EQ(NumberedName("", 99, 99), "_99");
  EXPECT_EQ(NumberedName("a", 7, 100), "a_007");
  EXPECT_EQ(NumberedName("a", 1234, 1234), "a_1234");
}

TEST(NaturalLess, OrdersNumbersByTheirValue) {
  const char* ordered[] = {"", "1", "01a", "2", "10", "a", "a1", "A2", "a10", "a10b", "a00011", "b", "照片2", "照片10"};
  for (std::size_t i = 0; i < std::size(ordered); ++i) {
    for (std::size_t j = 0; j < std::size(ordered); ++j) {
      EXPECT_EQ(NaturalLess(ordered[i], ordered[j]), i < j) << ordered[i] << " " << ordered[j];
    }
  }
  EXPECT_TRUE(NaturalLess("A1", "a01") != NaturalLess("a01", "A1"));
}

}  // namespace
}  // namespace quillon::base
