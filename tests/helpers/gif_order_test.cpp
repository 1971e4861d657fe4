// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/orders/gif_order.h"

#include <gtest/gtest.h>

namespace quillon::helpers {
namespace {

using Words = std::vector<std::string>;

Words Plain(const std::string& filter) { return {"-i", "/a b.gif", "-vf", filter, "-y", "-q:v", "0", "/out.gif"}; }
Words WithPalette(const std::string& filter) {
  return {"-i", "/a b.gif", "-i", "/app/paletten.png", "-filter_complex", filter, "-y", "-q:v", "0", "/out.gif"};
}
constexpr const char* kPaletteEnd = ",scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse";

TEST(GifOrder, ReadsBothCallsThatCut) {
  for (const Words& words :
       {Plain("crop=x=10:y=0:w=101:h=65535"), WithPalette(std::string("crop=x=10:y=0:w=101:h=65535") + kPaletteEnd)}) {
    const auto order = ReadGifOrder(words);
    ASSERT_TRUE(order);
    EXPECT_EQ(order->kind, GifOrder::Kind::Cut);
    EXPECT_EQ(order->source, "/a b.gif");
    EXPECT_EQ(order->target, "/out.gif");
    EXPECT_EQ(order->window, (base::Rect{10, 0, 101, 65535}));
  }
}

TEST(GifOrder, ReadsTheCallThatRemovesALogo) {
  const auto order = ReadGifOrder(WithPalette(std::string("delogo=x=1:y=2:w=30:h=40") + kPaletteEnd));
  ASSERT_TRUE(order);
  EXPECT_EQ(order->kind, GifOrder::Kind::RemoveLogo);
  EXPECT_EQ(order->window, (base::Rect{1, 2, 30, 40}));
  EXPECT_FALSE(ReadGifOrder(Plain("delogo=x=1:y=2:w=30:h=40")));
}

TEST(GifOrder, LeavesEveryOtherCallToFfmpeg) {
  for (const char* filter : {"crop=10:20", "crop=x=1:y=2:w=3:h=4,vflip", "crop=x=-1:y=2:w=3:h=4", "crop=x=1:y=2:w=3",
                             "crop=x=1:y=2:w=iw:h=4", "crop=x=1:y=2:w=3.5:h=4", "", "crop=x=99999999999:y=2:w=3:h=4"}) {
    EXPECT_FALSE(ReadGifOrder(Plain(filter))) << filter;
    EXPECT_FALSE(ReadGifOrder(WithPalette(filter + std::string(kPaletteEnd)))) << filter;
  }
  EXPECT_FALSE(ReadGifOrder(WithPalette("crop=x=1:y=2:w=3:h=4")));
  EXPECT_FALSE(ReadGifOrder(Plain(std::string("crop=x=1:y=2:w=3:h=4") + kPaletteEnd)));
  const Words good = Plain("crop=x=1:y=2:w=3:h=4");
  for (std::size_t i = 0; i < good.size(); ++i) {
    Words shorter = good;
    shorter.erase(shorter.begin() + static_cast<std::ptrdiff_t>(i));
    EXPECT_FALSE(ReadGifOrder(shorter)) << i;
    Words other = good;
    other[i] = "b";
    EXPECT_FALSE(ReadGifOrder(other)) << i;
  }
  EXPECT_FALSE(ReadGifOrder({}));
}

}  // namespace
}  // namespace quillon::helpers
