// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Which files are too short for the pixels that they claim: never one that a writer could have made.
#include <gtest/gtest.h>

#include "imaging/codecs/vips_loader.h"
#include "imaging/little_files.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using vips::VImage;

bool Holds(Format format, const std::string& content, base::Size size) {
  MemoryBytes bytes(content);
  return CanHold(format, bytes, size);
}

std::string Saved(const VImage& image, const char* suffix) {
  void* data = nullptr;
  std::size_t size = 0;
  image.write_to_buffer(suffix, &data, &size);
  std::string content(static_cast<const char*>(data), size);
  g_free(data);
  return content;
}

// The shortest GIF of one colour: each code is one pixel longer than the one before, and the full table stays in use.
std::string BlankGif(int side) {
  std::string data;
  unsigned held = 0;
  int bits = 0;
  const auto put = [&](unsigned code, int width) {
    for (held |= code << bits, bits += width; bits >= 8; held >>= 8, bits -= 8) data += static_cast<char>(held & 0xFF);
  };
  constexpr unsigned kClear = 4;
  constexpr unsigned kEnd = 5;
  std::int64_t left = std::int64_t{side} * side;
  put(kClear, 3);
  unsigned code = 0;
  int width = 3;
  for (std::int64_t length = 1; left > 0; left -= length) {
    put(code, width);
    if (code == 0) {
      code = kEnd + 1;
    } else if (code < 4095) {
      ++code;
    } else {
      continue;
    }
    ++length;
    if (code == 1U << width && width < 12) ++width;
  }
  put(kEnd, width);
  put(0, 8);
  std::string gif = Gif(side, side).substr(0, 13 + 10) + "\x02";
  for (std::size_t at = 0; at < data.size(); at += 255) {
    const std::string block = data.substr(at, 255);
    gif += static_cast<char>(block.size()) + block;
  }
  return gif + std::string("\0;", 2);
}

TEST(CanHold, BlankPicturesOf100Megapixels) {
  constexpr base::Size kSize{10000, 10000};
  const VImage white = VImage::black(kSize.width, kSize.height).invert();
  EXPECT_TRUE(Holds(Format::Png, Saved(white, ".png[compression=9,bitdepth=1]"), kSize));
  EXPECT_TRUE(Holds(Format::Png, Saved(white, ".png[compression=9]"), kSize));
  for (const char* suffix : {".tif[compression=lzw]", ".tif[compression=deflate]", ".tif[compression=packbits]",
                             ".tif[compression=ccittfax4,bitdepth=1]", ".tif[compression=jpeg]"}) {
    EXPECT_TRUE(Holds(Format::Tiff, Saved(white, suffix), kSize)) << suffix;
  }
  const std::string gif = BlankGif(kSize.width);
  EXPECT_LT(gif.size(), 60'000U);
  EXPECT_TRUE(Holds(Format::Gif, gif, kSize));
}

TEST(CanHold, TheBlankGifIsAPicture) {
  const std::string gif = BlankGif(3000);
  const VImage image = VImage::gifload_buffer(vips_blob_new(nullptr, gif.data(), gif.size()),
                                              VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR));
  EXPECT_EQ(image.width(), 3000);
  EXPECT_EQ(image.avg(), image(0, 0)[0]);
}

TEST(CanHold, NotMoreThanItsBytes) {
  EXPECT_TRUE(Holds(Format::Gif, Gif(8192, 8192), {8192, 8192})) << "frames need not cover the canvas";
  EXPECT_FALSE(Holds(Format::Gif, Gif(65535, 65535), {65535, 65535}));
  EXPECT_FALSE(Holds(Format::Gif, Gif(65535, 65535), {1, 1})) << "its canvas counts, even if it is decoded without";
  EXPECT_FALSE(Holds(Format::Png, Png(60000, 60000, ""), {60000, 60000}));
  EXPECT_FALSE(Holds(Format::Tiff, Tiff(false, 61, 43, 72, 2), {60000, 60000}));
  EXPECT_TRUE(Holds(Format::Tiff, Tiff(false, 61, 43, 72, 2), {61, 43}));
  EXPECT_TRUE(Holds(Format::Bmp, "BM", {60000, 60000})) << "its reader checks that";
}

}  // namespace
}  // namespace quillon::imaging
