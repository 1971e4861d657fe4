// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/gif/gif_math.h"

#include <gtest/gtest.h>

namespace quillon::formats {
namespace {

using base::Rect;

TEST(GifMath, ALogoDoesNotTouchTheUpperLeftEdge) {
  EXPECT_EQ(LogoRegion({0, 0, 20, 10}, {100, 80}), (Rect{1, 1, 20, 10}));
  EXPECT_EQ(LogoRegion({1, 7, 20, 10}, {100, 80}), (Rect{1, 7, 20, 10}));
  EXPECT_EQ(LogoRegion({0, 0, 100, 80}, {100, 80}), (Rect{1, 1, 99, 79}));
  EXPECT_TRUE(LogoRegion({0, 0, 1, 1}, {1, 1}).Empty());
}

TEST(GifMath, CallsAreTheGivenTemplates) {
  const Rect rect{10, 20, 30, 40};
  EXPECT_EQ(CropText("/in/a b.gif", rect, "/app/Tmp.gif"),
            "-i \"/in/a b.gif\" -vf crop=x=10:y=20:w=30:h=40 -y -q:v 0 \"/app/Tmp.gif\"");
  EXPECT_EQ(PaletteText("/in/a.gif", "/app/paletten.png"),
            "-i \"/in/a.gif\" -vf \"fps=2,scale=-1:-1::flags=lanczos,palettegen\" -y -q:v 0 \"/app/paletten.png\"");
  EXPECT_EQ(PaletteCropText("/in/a.gif", "/app/paletten.png", rect, "/out/a.gif"),
            "-i \"/in/a.gif\" -i \"/app/paletten.png\" -filter_complex "
            "\"crop=x=10:y=20:w=30:h=40,scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse\"  -y -q:v 0 \"/out/a.gif\"");
  EXPECT_EQ(PaletteLogoText("/in/a.gif", "/app/paletten.png", rect, "/out/a.gif"),
            "-i \"/in/a.gif\" -i \"/app/paletten.png\" -filter_complex "
            "\"delogo=x=10:y=20:w=30:h=40,scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse\"  -y -q:v 0 \"/out/a.gif\"");
}

}  // namespace
}  // namespace quillon::formats
