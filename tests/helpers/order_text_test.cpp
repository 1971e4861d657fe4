// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/orders/order_text.h"

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "host/testing/test_host.h"

namespace quillon::helpers {
namespace {

using namespace std::string_view_literals;

TEST(OrderText, ReadsBothKindsOfText) {
  EXPECT_EQ(DecodeOrder("\xFF\xFE"
                        "a\0-N"sv),
            "a中");
  EXPECT_EQ(DecodeOrder("\xFE\xFF\0aN-"sv), "a中");
  EXPECT_EQ(DecodeOrder("\xEF\xBB\xBF中"), "中");
  EXPECT_EQ(DecodeOrder("中\xFF"), "中\xFF");
  EXPECT_EQ(DecodeOrder(""), "");
  EXPECT_EQ(DecodeOrder("\xFF\xFE\x3D\xD8\x00\xDE"sv), "\U0001F600");
}

TEST(OrderText, RefusesTornText) {
  EXPECT_EQ(DecodeOrder("\xFF\xFE"
                        "a\0-"sv),
            std::nullopt);
  EXPECT_EQ(DecodeOrder("\xFF\xFE\x3D\xD8"sv), std::nullopt);
  EXPECT_EQ(DecodeOrder("\xFF\xFE\x3D\xD8"
                        "a\0"sv),
            std::nullopt);
  EXPECT_EQ(DecodeOrder("\xFF\xFE\x00\xDE"sv), std::nullopt);
}

TEST(OrderText, ReadsWhatTheProgramWrites) {
  const std::string text = "/图/a é\U0001F600.jpg\r\nSaveNew\r\n";
  EXPECT_EQ(DecodeOrder(base::Utf16WithMark(text)), text);
}

TEST(OrderText, HasLines) {
  EXPECT_EQ(LinesOf("a\r\nb\n\nc"), (std::vector<std::string>{"a", "b", "", "c"}));
  EXPECT_EQ(LinesOf("a\n"), (std::vector<std::string>{"a"}));
  EXPECT_TRUE(LinesOf("").empty());
}

TEST(OrderText, IsReadFromAFile) {
  host::testing::TestHost world;
  std::vector<std::string> lines;
  EXPECT_EQ(ReadOrder(world.files, world.folder.Path("none"), lines).GetProblem(), host::Problem::Missing);
  ASSERT_TRUE(ReadOrder(world.files, world.folder.Write("a", base::Utf16WithMark("x\r\ny")), lines));
  EXPECT_EQ(lines, (std::vector<std::string>{"x", "y"}));
  EXPECT_EQ(ReadOrder(world.files, world.folder.Write("b", std::string("x\0y", 3)), lines).GetProblem(),
            host::Problem::Damaged);
  EXPECT_EQ(ReadOrder(world.files, world.folder.Write("c", "\xFF\xFEx"), lines).GetProblem(), host::Problem::Damaged);
}

TEST(PlainPath, IsAbsoluteAndNeverLeadsBack) {
  for (const char* good : {"/a", "/a/b.tif", "/a/..b/c..", "/", "/a/.../b"}) EXPECT_TRUE(IsPlainPath(good)) << good;
  for (const char* bad : {"", "a", "../a", "./a", "/..", "/a/../b", "/a/..", "a/b"}) {
    EXPECT_FALSE(IsPlainPath(bad)) << bad;
  }
}

}  // namespace
}  // namespace quillon::helpers
