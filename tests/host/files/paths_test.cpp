// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <set>

#include "host/files/files.h"
#include "host/files/paths.h"

namespace quillon::host {
namespace {

TEST(DraftName, StartsWithAPointSoThatItIsHidden) {
  EXPECT_EQ(DraftName("a.jpg", 0, 255), ".a.jpg.quillon-000000");
  EXPECT_EQ(DraftName("a.jpg", 35, 255), ".a.jpg.quillon-z00000");
  EXPECT_EQ(DraftName("a.jpg", 36, 255), ".a.jpg.quillon-010000");
  EXPECT_EQ(DraftName("-rf", 0, 255), ".-rf.quillon-000000");
}

TEST(DraftName, SerialsGiveUnlikeNames) {
  std::set<std::string> names;
  for (std::uint64_t serial = 0xFFFFFFFFFFFFFF00u; serial < 0xFFFFFFFFFFFFFFFFu; ++serial) {
    names.insert(DraftName("a", serial, 255));
  }
  EXPECT_EQ(names.size(), 255u);
}

TEST(DraftName, IsNeverLongerThanDisksAllow) {
  const std::string long255(255, 'x');
  EXPECT_EQ(DraftName(long255, 0, 255).size(), 255u);
  EXPECT_TRUE(IsDraftName(DraftName(long255, 0, 255)));
  EXPECT_EQ(DraftName(std::string(239, 'x'), 0, 255), "." + std::string(239, 'x') + ".quillon-000000");
  EXPECT_EQ(DraftName(long255, 0, 64).size(), 64u);
  EXPECT_EQ(DraftName(long255, 0, 3), "..quillon-000000");
}

TEST(DraftName, CutsAtTheEndOfACharacter) {
  std::string name;
  for (int i = 0; i < 85; ++i) name += "图";
  // 239 bytes would hold 79 characters of three bytes and two bytes of the next.
  EXPECT_EQ(DraftName(name, 0, 255), "." + name.substr(0, 237) + ".quillon-000000");
}

TEST(DraftName, IsRecognised) {
  for (const char* name : {".a.jpg.quillon-000000", ".quillon-a.quillon-zzzzzz", "..quillon-0a9z00"}) {
    EXPECT_TRUE(IsDraftName(name)) << name;
  }
  for (const char* name :
       {"", ".", "a.jpg", ".a.jpg", "a.jpg.quillon-000000", ".a.jpg.quillon-00000", ".a.jpg.quillon-0000000",
        ".a.jpg.quillon-00000A", ".a.jpg.quillon-00 000", ".quillon-000000", ".a.jpg.Quillon-000000"}) {
    EXPECT_FALSE(IsDraftName(name)) << name;
  }
}

TEST(EntryPath, SplitsAtTheLastSeparator) {
  struct Row {
    const char* path;
    const char* folder;
    const char* name;
  };
  const Row rows[] = {{"/a/b.c", "/a", "b.c"}, {"/a", "/", "a"}, {"a", ".", "a"}, {"a/b", "a", "b"},
                      {"/a/", "/a", ""},       {"/", "/", ""},   {"", ".", ""}};
  for (const Row& row : rows) {
    EXPECT_EQ(SplitEntry(row.path).folder, row.folder) << row.path;
    EXPECT_EQ(SplitEntry(row.path).name, row.name) << row.path;
  }
}

TEST(EntryPath, HeadsEndWithACharacter) {
  EXPECT_EQ(HeadOfName("abc", 3), "abc");
  EXPECT_EQ(HeadOfName("abcd", 3), "abc");
  EXPECT_EQ(HeadOfName("a图", 3), "a");
  EXPECT_EQ(HeadOfName("a图", 4), "a图");
  EXPECT_EQ(HeadOfName("\xF0\x9F\x98\x80z", 3), "");
  // Bytes that are no text are cut anywhere.
  EXPECT_EQ(HeadOfName("\x80\x80\x80\x80\x80\x80\x80", 6), "\x80\x80\x80\x80\x80\x80");
  EXPECT_EQ(HeadOfName("abc", 0), "");
}

}  // namespace
}  // namespace quillon::host
