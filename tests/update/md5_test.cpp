// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/md5.h"

#include <string>

#include <gtest/gtest.h>

#include "host/testing/temp_folder.h"

namespace quillon::update {
namespace {

TEST(Md5, OfFiles) {
  host::testing::TempFolder folder;
  EXPECT_EQ(Md5OfFile(folder.Write("empty", "")), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(Md5OfFile(folder.Write("abc", "abc")), "900150983cd24fb0d6963f7d28e17f72");
  // Longer than one block, and ending inside one.
  EXPECT_EQ(Md5OfFile(folder.Write("long", std::string(100000, 'a'))), "1af6d6f2f682f76f80e606aeaaee1680");
  EXPECT_EQ(Md5OfFile(folder.Path("missing")), "");
  EXPECT_EQ(Md5OfFile(folder.Path()), "");
}

}  // namespace
}  // namespace quillon::update
