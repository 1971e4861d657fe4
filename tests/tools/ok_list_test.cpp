// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/ok_list.h"

#include <gtest/gtest.h>

namespace quillon::tools {
namespace {

TEST(OkListTextTest, HasAValueALine) {
  const OkList list{.application = "Quillon",
                    .target = "/out/a.tif",
                    .compress = true,
                    .quality = 2,
                    .colour = true,
                    .grey = false,
                    .resize = true,
                    .width = 640,
                    .height = 480,
                    .cut = true,
                    .left = 1,
                    .right = 2,
                    .top = 3,
                    .bottom = 4,
                    .cutByRule = true,
                    .cutRule = "^a b$",
                    .matchCase = true,
                    .cutAll = false,
                    .headFirst = true,
                    .verify = true,
                    .headRule = "_0$",
                    .dpi = 300,
                    .adjust = true,
                    .brightness = -5,
                    .contrast = 7,
                    .adjustHeads = false,
                    .sharpen = true,
                    .pictures = {"/in/1.jpg", "/in/图 2.png"}};
  EXPECT_EQ(OkListText(list),
            "Quillon\n/out/a.tif\n1\n2\n1\n0\n1\n640\n480\n1\n1\n2\n3\n4\nTrue\n^a "
            "b$\n1\nFalse\n1\n1\n_0$\n300\n1\n-5\n7\n0\n"
            "1\n/in/1.jpg\n/in/图 2.png\n");
}

TEST(OkListTextTest, CarriesNoLineBreaks) {
  EXPECT_EQ(OkListText({.target = "/a\nb.tif"}), std::nullopt);
  EXPECT_EQ(OkListText({.cutRule = "a\r"}), std::nullopt);
  EXPECT_EQ(OkListText({.pictures = {"/a.jpg", "/b\n.jpg"}}), std::nullopt);
}

}  // namespace
}  // namespace quillon::tools
