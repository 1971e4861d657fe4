// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/types.h"

#include <gtest/gtest.h>

namespace quillon::imaging {
namespace {

TEST(EncoderFor, KnowsTheExtensions) {
  struct Case {
    const char* extension;
    Encoder encoder;
  };
  const Case cases[] = {{"jpg", Encoder::Jpeg},  {"JPEG", Encoder::Jpeg}, {"jpe", Encoder::Jpeg},
                        {"jfif", Encoder::Jpeg}, {"png", Encoder::Png},   {"PNG", Encoder::Png},
                        {"gif", Encoder::Gif},   {"tif", Encoder::Tiff},  {"Tiff", Encoder::Tiff},
                        {"bmp", Encoder::Bmp},   {"dib", Encoder::Bmp},   {"psd", Encoder::Jpeg},
                        {"", Encoder::Jpeg}};
  for (const Case& c : cases) EXPECT_EQ(EncoderFor(c.extension), c.encoder) << c.extension;
}

}  // namespace
}  // namespace quillon::imaging
