// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_cut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <fstream>
#include <thread>

#include <jpeglib.h>

#include "imaging/jpeg_maker.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::Colours;
using testing::CutPixels;
using testing::MakeJpeg;
using testing::MakeOptions;
using testing::Pixels;
using testing::ReadJpeg;
using testing::ReadResult;
using testing::Scans;
using testing::ScratchFolder;
using testing::TestPicture;

class JpegCutTest : public ::testing::Test {
 protected:
  Status Cut(const std::string& bytes, base::Rect rect, int quality = 80, int dpi = 0, Exif exif = Exif::Drop,
             const Limits& limits = {}) {
    const std::string path = folder_.Put("source.jpg", bytes);
    result_.clear();
    blocks_.clear();
    return CutJpeg(
        path, rect, quality, dpi, exif, limits,
        [this](const void* data, std::size_t size) {
          result_.append(static_cast<const char*>(data), size);
          blocks_.push_back(size);
          return Status::Ok();
        },
        control_);
  }

  // The cut holds exactly the samples that decoding everything, cutting and encoding them gives.
  void ExpectAsWholeDecode(const std::string& bytes, base::Rect rect, const MakeOptions& output,
                           const std::vector<int>& white) {
    const Status status = Cut(bytes, rect, output.quality);
    ASSERT_TRUE(status) << status.Why();
    const ReadResult got = ReadJpeg(result_);
    const ReadResult wanted = ReadJpeg(MakeJpeg(CutPixels(ReadJpeg(bytes).pixels, rect, white), output));
    EXPECT_EQ(got.warnings, 0);
    EXPECT_EQ(got.colourSpace, wanted.colourSpace);
    EXPECT_EQ(got.sampling, wanted.sampling);
    EXPECT_EQ(got.adobe, wanted.adobe);
    ASSERT_EQ(got.pixels.size, wanted.pixels.size);
    EXPECT_EQ(got.pixels.samples, wanted.pixels.samples)
        << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height;
  }

  ScratchFolder folder_;
  std::string result_;
  std::vector<std::size_t> blocks_;
  JpegCutControl control_;
};

std::string Source(base::Size size, const MakeOptions& options) {
  return MakeJpeg(TestPicture(size, options.colours), options);
}

MakeOptions Output(Colours colours, int quality = 80) {
  MakeOptions options;
  options.colours = colours;
  options.quality = quality;
  options.luma = {2, 2};
  return options;
}

struct Sampling {
  int across;
  int down;
};

class JpegCutSamplingTest : public JpegCutTest, public ::testing::WithParamInterface<std::tuple<Sampling, Scans>> {};

// Small parts of the picture, which are cut pixel by pixel.
TEST_P(JpegCutSamplingTest, EveryOffsetInAnMcuIsTheWholeDecode) {
  const auto [sampling, scans] = GetParam();
  MakeOptions options;
  options.luma = {sampling.across, sampling.down};
  options.scans = scans;
  const std::string bytes = Source({83, 75}, options);
  for (int top = 0; top <= 17; ++top) {
    for (int left = 0; left <= 33; ++left) {
      ExpectAsWholeDecode(bytes, {left, top, 19 + left % 3, 21 + top % 3}, Output(Colours::YCbCr), {255, 128, 128});
      if (HasFailure()) return;
    }
  }
}

TEST_P(JpegCutSamplingTest, EveryEndIsTheWholeDecode) {
  const auto [sampling, scans] = GetParam();
  MakeOptions options;
  options.luma = {sampling.across, sampling.down};
  options.scans = scans;
  const std::string bytes = Source({203, 75}, options);
  for (int bottom = 40; bottom <= 75; ++bottom) {
    const int right = bottom + 128;
    ExpectAsWholeDecode(bytes, {136, 16, right - 136, bottom - 16}, Output(Colours::YCbCr), {255, 128, 128});
    ExpectAsWholeDecode(bytes, {0, 0, bottom, bottom}, Output(Colours::YCbCr), {255, 128, 128});
    if (HasFailure()) return;
  }
}

// Returns a component of the expected result: the samples of the source, averaged if the source has more of them. The
// last row and column are repeated up to whole blocks.
testing::Plane CutPlane(const testing::Plane& source, base::Rect rect, int across, int down, base::Size padded) {
  const base::Size size = {(rect.width + across - 1) / across, (rect.height + down - 1) / down};
  testing::Plane out{size, padded, {}};
  for (int y = 0; y < padded.height; ++y) {
    for (int x = 0; x < padded.width; ++x) {
      const int column = std::min(x, size.width - 1) * across;
      const int row = std::min(y, size.height - 1) * down;
      const int nextColumn = std::min(column + across - 1, rect.width - 1);
      const int nextRow = std::min(row + down - 1, rect.height - 1);
      const auto at = [&](int c, int r) { return source.At(rect.left + c, rect.top + r); };
      const int sum = at(column, row) + at(nextColumn, row) + at(column, nextRow) + at(nextColumn, nextRow);
      const int turn = std::min(x, size.width - 1) % 2;
      int value = sum / 4;
      if (across == 2 && nextColumn == column) {
        value = (at(column, row) + at(column, nextRow) + 1) / 2;
      } else if (across == 2 && down == 2) {
        value = (sum + 1 + turn) / 4;
      } else if (across == 2 || down == 2) {
        value = (sum / 2 + turn) / 2;
      }
      out.samples.push_back(static_cast<unsigned char>(value));
    }
  }
  return out;
}

int CeilDiv(int value, int divisor) { return (value + divisor - 1) / divisor; }

// Returns the expected cut of rect from bytes with stored factors in, saved with out, computed by plain loops over the
// components.
std::string PlanesReference(const std::string& bytes, base::Rect rect, Sampling in, const MakeOptions& output) {
  const std::vector<testing::Plane> source = testing::ReadPlanes(bytes);
  const Sampling out = {output.luma.first, output.luma.second};
  std::vector<testing::Plane> planes;
  for (std::size_t c = 0; c < source.size(); ++c) {
    const bool chroma = c == 1 || c == 2;
    const Sampling stored = chroma ? in : Sampling{1, 1};
    const Sampling wanted = chroma ? out : Sampling{1, 1};
    const base::Rect part = {rect.left / stored.across, rect.top / stored.down, CeilDiv(rect.width, stored.across),
                             CeilDiv(rect.height, stored.down)};
    const base::Size padded = {CeilDiv(rect.width, wanted.across) + 16, CeilDiv(rect.height, wanted.down) + 16};
    planes.push_back(CutPlane(source[c], part, wanted.across / stored.across, wanted.down / stored.down, padded));
  }
  return testing::MakeJpegOfPlanes({rect.width, rect.height}, planes, output);
}

// Large parts that begin on a chroma sample keep the components as they are stored.
TEST_P(JpegCutSamplingTest, StoredComponentsPassThrough) {
  const auto [sampling, scans] = GetParam();
  MakeOptions options;
  options.luma = {sampling.across, sampling.down};
  options.scans = scans;
  const std::string bytes = Source({91, 83}, options);
  for (const int quality : {80, 95}) {
    MakeOptions output = Output(Colours::YCbCr, quality);
    if (quality >= 90) output.luma = {std::min(sampling.across, 2), std::min(sampling.down, 2)};
    if (sampling.across > output.luma.first) return;  // stored coarser than the result has it
    for (int i = 0; i < 60; ++i) {
      const base::Rect rect = {i % 5 * sampling.across, i % 7 * sampling.down, 91 - 8 - i % 23, 83 - 14 - i % 19};
      ASSERT_TRUE(Cut(bytes, rect, quality));
      const std::string reference = PlanesReference(bytes, rect, sampling, output);
      EXPECT_EQ(ReadJpeg(result_).sampling, ReadJpeg(reference).sampling);
      EXPECT_EQ(ReadJpeg(result_).pixels, ReadJpeg(reference).pixels)
          << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height << " quality " << quality;
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, JpegCutSamplingTest,
                         ::testing::Combine(::testing::Values(Sampling{1, 1}, Sampling{2, 1}, Sampling{1, 2},
                                                              Sampling{2, 2}, Sampling{4, 1}, Sampling{4, 2}),
                                            ::testing::Values(Scans::One, Scans::Progressive, Scans::PerComponent)));

struct ColourCase {
  Colours colours;
  std::vector<int> white;
};

class JpegCutColourTest : public JpegCutTest, public ::testing::WithParamInterface<ColourCase> {};

TEST_P(JpegCutColourTest, ColoursPassThroughAndOutsideIsWhite) {
  MakeOptions options;
  options.colours = GetParam().colours;
  const std::string bytes = Source({41, 37}, options);
  const base::Rect rects[] = {{5, 7, 20, 20},   {-3, -5, 20, 20}, {30, 30, 25, 29}, {-4, -4, 60, 60},
                              {10, -6, 9, 50},  {-20, 9, 90, 5},  {100, 0, 10, 10}, {-50, -50, 20, 20},
                              {0, 37, 41, 100}, {-7, 10, 7, 7},   {41, 10, 3, 3}};
  for (const base::Rect& rect : rects) {
    ExpectAsWholeDecode(bytes, rect, Output(GetParam().colours), GetParam().white);
  }
}

INSTANTIATE_TEST_SUITE_P(All, JpegCutColourTest,
                         ::testing::Values(ColourCase{Colours::Grey, {255}},
                                           ColourCase{Colours::YCbCr, {255, 128, 128}},
                                           ColourCase{Colours::Rgb, {255, 255, 255}},
                                           ColourCase{Colours::Cmyk, {0, 0, 0, 0}},
                                           ColourCase{Colours::AdobeCmyk, {255, 255, 255, 255}},
                                           ColourCase{Colours::Ycck, {0, 128, 128, 255}}));

TEST_P(JpegCutColourTest, StoredComponentsPassThrough) {
  MakeOptions options;
  options.colours = GetParam().colours;
  const bool chroma = options.colours == Colours::YCbCr || options.colours == Colours::Ycck;
  if (!chroma) options.luma = {1, 1};
  const std::string bytes = Source({91, 83}, options);
  MakeOptions output = options;
  output.quality = 80;
  const Sampling stored = {options.luma.first, options.luma.second};
  for (const base::Rect& rect : {base::Rect{4, 2, 80, 71}, base::Rect{0, 0, 91, 83}, base::Rect{10, 6, 81, 77}}) {
    ASSERT_TRUE(Cut(bytes, rect));
    const std::string reference = PlanesReference(bytes, rect, stored, output);
    EXPECT_EQ(ReadJpeg(result_).pixels, ReadJpeg(reference).pixels);
    EXPECT_EQ(ReadJpeg(result_).adobe, ReadJpeg(reference).adobe);
  }
}

TEST_F(JpegCutTest, WhatWasCutOffDoesNotHideInThePadding) {
  Pixels pixels{{64, 64}, 1, {}};
  for (int i = 0; i < 64 * 64; ++i) pixels.samples.push_back(i % 64 < 50 && i / 64 < 50 ? 255 : 0);
  MakeOptions options;
  options.colours = Colours::Grey;
  options.quality = 100;
  ASSERT_TRUE(Cut(MakeJpeg(pixels, options), {0, 0, 50, 50}, 100));
  const testing::Plane plane = testing::ReadPlanes(result_).at(0);
  for (int y = 0; y < 56; ++y) {
    for (int x = 0; x < 56; ++x) EXPECT_GE(plane.At(x, y), 250) << x << "," << y;
  }
}

TEST_F(JpegCutTest, HugeMarginsInsideIntegerRangeDoNotOverflow) {
  const std::string bytes = Source({16, 16}, {});
  constexpr int kMost = 2147483647;
  EXPECT_TRUE(Cut(bytes, {kMost, kMost, 8, 8}));
  EXPECT_TRUE(Cut(bytes, {-kMost - 1, -kMost - 1, 8, 8}));
  EXPECT_EQ(ReadJpeg(result_).pixels, CutPixels(ReadJpeg(bytes).pixels, {100, 100, 8, 8}, {255, 128, 128}));
}

TEST_F(JpegCutTest, OnePixel) {
  const std::string bytes = Source({1, 1}, {});
  ExpectAsWholeDecode(bytes, {0, 0, 1, 1}, Output(Colours::YCbCr), {255, 128, 128});
}

TEST_F(JpegCutTest, WidestPicture) {
  MakeOptions options;
  options.quality = 50;
  const std::string bytes = Source({65500, 3}, options);
  ExpectAsWholeDecode(bytes, {65470, 1, 30, 2}, Output(Colours::YCbCr), {255, 128, 128});
  ASSERT_TRUE(Cut(bytes, {0, 0, 65500, 3}));
  const std::string reference = PlanesReference(bytes, {0, 0, 65500, 3}, {2, 2}, Output(Colours::YCbCr));
  EXPECT_EQ(ReadJpeg(result_).pixels, ReadJpeg(reference).pixels);
}

TEST_F(JpegCutTest, RestartMarkersAndArithmeticCoding) {
  for (const bool arithmetic : {false, true}) {
    for (const Scans scans : {Scans::One, Scans::Progressive}) {
      MakeOptions options;
      options.arithmetic = arithmetic;
      options.scans = scans;
      options.restartRows = 1;
      const std::string bytes = Source({70, 90}, options);
      ExpectAsWholeDecode(bytes, {9, 35, 31, 30}, Output(Colours::YCbCr), {255, 128, 128});
      ExpectAsWholeDecode(bytes, {9, 35, 31, 55}, Output(Colours::YCbCr), {255, 128, 128});
    }
  }
}

TEST_F(JpegCutTest, ChromaIsKeptAsTheSourceHasItFromQuality90) {
  using Factors = std::vector<std::pair<int, int>>;
  struct Case {
    std::pair<int, int> source;
    int quality;
    Factors wanted;
  };
  const Factors half = {{2, 2}, {1, 1}, {1, 1}};
  const Case cases[] = {{{1, 1}, 89, half},
                        {{1, 1}, 90, {{1, 1}, {1, 1}, {1, 1}}},
                        {{2, 1}, 90, {{2, 1}, {1, 1}, {1, 1}}},
                        {{1, 2}, 90, {{1, 2}, {1, 1}, {1, 1}}},
                        {{2, 2}, 100, half},
                        {{4, 1}, 95, {{2, 1}, {1, 1}, {1, 1}}},
                        {{2, 1}, 30, half}};
  for (const Case& c : cases) {
    MakeOptions options;
    options.luma = c.source;
    ASSERT_TRUE(Cut(Source({40, 40}, options), {4, 4, 30, 30}, c.quality));
    EXPECT_EQ(ReadJpeg(result_).sampling, c.wanted) << c.source.first << c.source.second << " " << c.quality;
  }
}

TEST_F(JpegCutTest, QualityIsClamped) {
  const std::string bytes = Source({40, 40}, {});
  ASSERT_TRUE(Cut(bytes, {0, 0, 40, 40}, 500));
  const std::string best = result_;
  ASSERT_TRUE(Cut(bytes, {0, 0, 40, 40}, 100));
  EXPECT_EQ(best, result_);
  ASSERT_TRUE(Cut(bytes, {0, 0, 40, 40}, -7));
  const std::string worst = result_;
  ASSERT_TRUE(Cut(bytes, {0, 0, 40, 40}, 0));
  EXPECT_EQ(worst, result_);
  EXPECT_LT(worst.size(), best.size());
}

TEST_F(JpegCutTest, ResultComesInLargeBlocks) {
  ASSERT_TRUE(Cut(Source({900, 900}, {}), {0, 0, 900, 900}, 100));
  ASSERT_GT(blocks_.size(), 2u);
  for (std::size_t i = 0; i + 1 < blocks_.size(); ++i) EXPECT_GE(blocks_[i], 64u * 1024);
}

// --- Density, profile, EXIF

struct DensityCase {
  int unit;
  int density;
  int exifDpi;
  int dpi;
  int wantedUnit;
  int wantedDensity;
};

class JpegCutDensityTest : public JpegCutTest, public ::testing::WithParamInterface<DensityCase> {};

TEST_P(JpegCutDensityTest, Density) {
  const DensityCase& c = GetParam();
  MakeOptions options;
  options.densityUnit = c.unit;
  options.density = c.density;
  options.jfif = c.unit >= 0;
  if (c.exifDpi > 0) {
    options.segments.emplace_back(JPEG_APP0 + 1, std::string("Exif\0\0", 6) + MinimalExif(1, c.exifDpi));
  }
  ASSERT_TRUE(Cut(Source({20, 20}, options), {2, 2, 10, 10}, 80, c.dpi));
  const ReadResult got = ReadJpeg(result_);
  EXPECT_TRUE(got.jfif);
  EXPECT_EQ(got.densityUnit, c.wantedUnit);
  EXPECT_EQ(got.densityX, c.wantedDensity);
  EXPECT_EQ(got.densityY, c.wantedDensity);
}

INSTANTIATE_TEST_SUITE_P(All, JpegCutDensityTest,
                         ::testing::Values(DensityCase{1, 72, 0, 0, 1, 72},     // kept
                                           DensityCase{2, 118, 0, 0, 2, 118},   // kept in its unit
                                           DensityCase{1, 72, 0, 300, 1, 300},  // as wanted
                                           DensityCase{1, 72, 350, 0, 1, 72},   // JFIF goes before EXIF
                                           DensityCase{0, 1, 350, 0, 1, 350},   // only EXIF has it
                                           DensityCase{-1, 1, 240, 0, 1, 240},  // no JFIF at all
                                           DensityCase{-1, 1, 240, 254, 1, 254},
                                           DensityCase{0, 3, 0, 0, 0, 3},  // a mere ratio
                                           DensityCase{0, 1, 0, 99999, 1, 65535}));

std::string ExifSegment(const std::string& block) { return std::string("Exif\0\0", 6) + block; }

std::vector<std::string> SegmentsOf(const ReadResult& result, int marker) {
  std::vector<std::string> out;
  for (const auto& [found, payload] : result.segments) {
    if (found == marker) out.push_back(payload);
  }
  return out;
}

TEST_F(JpegCutTest, RgbFilesCarryTheResolutionInExif) {
  MakeOptions options;
  options.colours = Colours::Rgb;
  ASSERT_TRUE(Cut(Source({20, 20}, options), {2, 2, 10, 10}, 80, 254));
  const ReadResult got = ReadJpeg(result_);
  EXPECT_FALSE(got.jfif);
  ASSERT_EQ(SegmentsOf(got, JPEG_APP0 + 1).size(), 1u);
  EXPECT_EQ(ReadExif(SegmentsOf(got, JPEG_APP0 + 1)[0].substr(6)).dpi, 254);
}

TEST_F(JpegCutTest, ProfileOfSeveralSegmentsIsKept) {
  MakeOptions options;
  const std::string first = std::string("ICC_PROFILE\0\1\2", 14) + std::string(65519, 'a');
  const std::string second = std::string("ICC_PROFILE\0\2\2", 14) + std::string(3000, 'b');
  options.segments = {{JPEG_APP0 + 2, first}, {JPEG_APP0 + 2, "MPF other"}, {JPEG_APP0 + 2, second}};
  ASSERT_TRUE(Cut(Source({20, 20}, options), {2, 2, 10, 10}));
  EXPECT_EQ(SegmentsOf(ReadJpeg(result_), JPEG_APP0 + 2), (std::vector<std::string>{first, second}));
}

TEST_F(JpegCutTest, ExifIsDroppedUnlessAskedFor) {
  MakeOptions options;
  options.segments = {{JPEG_APP0 + 1, ExifSegment(MinimalExif(1, 300))}};
  const std::string bytes = Source({20, 20}, options);
  ASSERT_TRUE(Cut(bytes, {2, 2, 10, 10}));
  EXPECT_TRUE(SegmentsOf(ReadJpeg(result_), JPEG_APP0 + 1).empty());
  ASSERT_TRUE(Cut(bytes, {2, 2, 10, 10}, 80, 240, Exif::Keep));
  const auto kept = SegmentsOf(ReadJpeg(result_), JPEG_APP0 + 1);
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(ReadExif(kept[0].substr(6)).dpi, 240);
}

TEST_F(JpegCutTest, OrientationIsKeptInAnyCase) {
  MakeOptions options;
  options.segments = {{JPEG_APP0 + 1, ExifSegment(MinimalExif(6, 300))}};
  const std::string bytes = Source({20, 20}, options);
  for (const Exif exif : {Exif::Drop, Exif::Keep}) {
    ASSERT_TRUE(Cut(bytes, {2, 2, 10, 10}, 80, 0, exif));
    const auto kept = SegmentsOf(ReadJpeg(result_), JPEG_APP0 + 1);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(ReadExif(kept[0].substr(6)).orientation, 6);
    EXPECT_EQ(ReadExif(kept[0].substr(6)).dpi, exif == Exif::Keep ? 300 : 0);
  }
}

TEST_F(JpegCutTest, OtherMetadataIsDropped) {
  MakeOptions options;
  options.segments = {{JPEG_APP0 + 1, std::string("http://ns.adobe.com/xap/1.0/\0<x/>", 33)},
                      {JPEG_APP0 + 13, "Photoshop 3.0"},
                      {JPEG_COM, "secret"}};
  ASSERT_TRUE(Cut(Source({20, 20}, options), {2, 2, 10, 10}, 80, 0, Exif::Keep));
  EXPECT_EQ(result_.find("adobe"), std::string::npos);
  EXPECT_EQ(result_.find("Photoshop"), std::string::npos);
  EXPECT_EQ(result_.find("secret"), std::string::npos);
}

// --- What is refused

TEST_F(JpegCutTest, EmptyRectangle) {
  const std::string bytes = Source({20, 20}, {});
  EXPECT_EQ(Cut(bytes, {0, 0, 0, 5}).GetProblem(), Problem::Other);
  EXPECT_EQ(Cut(bytes, {0, 0, 5, -5}).GetProblem(), Problem::Other);
}

TEST_F(JpegCutTest, NotAJpeg) {
  for (const std::string& bytes : {std::string(), std::string("\x89PNG\r\n\x1a\n"), std::string("\xFF\xD8"),
                                   std::string("\xFF\xD8\x00\xE0", 4), std::string(100000, 'x')}) {
    EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}).GetProblem(), Problem::Unsupported);
  }
}

TEST_F(JpegCutTest, KindsOfJpegThatAreNotRead) {
  std::string bytes = Source({20, 20}, {});
  const std::size_t frame = bytes.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  std::string lossless = bytes;
  lossless[frame + 1] = '\xC3';
  EXPECT_EQ(Cut(lossless, {0, 0, 5, 5}).GetProblem(), Problem::Unsupported);
  std::string deep = bytes;
  deep[frame + 4] = 12;
  EXPECT_EQ(Cut(deep, {0, 0, 5, 5}).GetProblem(), Problem::Unsupported);
}

TEST_F(JpegCutTest, MissingFileAndFolder) {
  const auto sink = [](const void*, std::size_t) { return Status::Ok(); };
  EXPECT_EQ(CutJpeg(folder_.Path("none.jpg"), {0, 0, 5, 5}, 80, 0, Exif::Drop, {}, sink).GetProblem(),
            Problem::Missing);
  EXPECT_FALSE(CutJpeg(folder_.Path(""), {0, 0, 5, 5}, 80, 0, Exif::Drop, {}, sink));
}

TEST_F(JpegCutTest, LimitsAreCheckedBeforeAnythingIsDecoded) {
  MakeOptions options;
  options.scans = Scans::Progressive;
  const std::string bytes = Source({100, 60}, options);
  Limits limits;
  limits.side = 99;
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}, 80, 0, Exif::Drop, limits).GetProblem(), Problem::TooLarge);
  limits = {};
  limits.pixels = 5999;
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}, 80, 0, Exif::Drop, limits).GetProblem(), Problem::TooLarge);
  limits = {};
  limits.memory = 30000;  // the coefficients alone take 112 x 64 x 3 bytes
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}, 80, 0, Exif::Drop, limits).GetProblem(), Problem::TooLarge);
  EXPECT_EQ(Cut(bytes, {0, 0, 65501, 5}).GetProblem(), Problem::TooLarge);
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 65501}).GetProblem(), Problem::TooLarge);
  EXPECT_TRUE(result_.empty());
}

TEST_F(JpegCutTest, AbsurdSizeInTheHeader) {
  MakeOptions options;
  options.scans = Scans::Progressive;
  std::string bytes = Source({100, 60}, options);
  const std::size_t frame = bytes.find("\xFF\xC2");
  ASSERT_NE(frame, std::string::npos);
  for (std::size_t i = 5; i < 9; ++i) bytes[frame + i] = '\xFF';
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}).GetProblem(), Problem::TooLarge);
  bytes.replace(frame + 5, 4, "\xFF\xDC\xFF\xDC");  // 65500 x 65500: 13 GB of coefficients
  EXPECT_EQ(Cut(bytes, {0, 0, 5, 5}).GetProblem(), Problem::TooLarge);
}

class JpegCutDamageTest : public JpegCutTest, public ::testing::WithParamInterface<Scans> {};

TEST_P(JpegCutDamageTest, TruncatedAnywhereIsDamagedWhereverTheRectangleLies) {
  MakeOptions options;
  options.scans = GetParam();
  const std::string bytes = Source({90, 120}, options);
  for (std::size_t size = 20; size < bytes.size(); size += size + 40 < bytes.size() ? 37 : 1) {
    for (const base::Rect rect : {base::Rect{0, 0, 90, 120}, base::Rect{10, 10, 20, 20}, base::Rect{200, 0, 5, 5}}) {
      const Status status = Cut(bytes.substr(0, size), rect);
      EXPECT_EQ(status.GetProblem(), Problem::Damaged) << size << " of " << bytes.size();
      EXPECT_FALSE(status.Why().empty());
    }
  }
}

TEST_P(JpegCutDamageTest, FlippedBitsNeverCrash) {
  MakeOptions options;
  options.scans = GetParam();
  const std::string bytes = Source({60, 60}, options);
  int damaged = 0;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::string flipped = bytes;
    flipped[at] = static_cast<char>(flipped[at] ^ (1 << at % 8));
    const Status status = Cut(flipped, {5, 5, 50, 55});
    EXPECT_NE(status.GetProblem(), Problem::Stopped);
    if (status) continue;
    EXPECT_FALSE(status.Why().empty());
    ++damaged;
  }
  EXPECT_GT(damaged, 10);
}

INSTANTIATE_TEST_SUITE_P(All, JpegCutDamageTest,
                         ::testing::Values(Scans::One, Scans::Progressive, Scans::PerComponent));

// Data after the last row of pixels.
TEST_F(JpegCutTest, PaddingBeforeTheEndIsHarmlessOtherBytesAreNot) {
  const std::string bytes = Source({40, 40}, {});
  const std::string body = bytes.substr(0, bytes.size() - 2);
  const base::Rect all = {0, 0, 40, 40};
  EXPECT_TRUE(Cut(body + std::string(100, '\0') + "\xFF\xD9", all));
  EXPECT_TRUE(Cut(body + std::string(100, '\xFF') + "\xFF\xD9", all));
  EXPECT_TRUE(Cut(bytes + "trailing data", all));
  const std::string leftover(40, 'A');  // more than the decoder reads in advance
  EXPECT_EQ(Cut(body + leftover + "\xFF\xD9", all).GetProblem(), Problem::Damaged);
  EXPECT_TRUE(Cut(body + leftover + "\xFF\xD9", {0, 0, 40, 8}));
}

TEST_F(JpegCutTest, SegmentsAfterThePictureDataAreFollowed) {
  const std::string bytes = Source({40, 40}, {});
  const std::string body = bytes.substr(0, bytes.size() - 2);
  // An end-of-image marker inside a comment is not the end of the file.
  EXPECT_EQ(Cut(body + std::string("\xFF\xFE\x00\x06\xFF\xD9..", 8), {0, 0, 40, 8}).GetProblem(), Problem::Damaged);
  EXPECT_TRUE(Cut(body + std::string("\xFF\xFE\x00\x06\xFF\xD9..\xFF\xD9", 10), {0, 0, 40, 8}));
}

TEST_F(JpegCutTest, StrayBytesBetweenSegmentsAreHarmless) {
  std::string bytes = Source({40, 40}, {});
  const std::size_t table = bytes.find("\xFF\xDB");
  bytes.insert(table, "stray");
  EXPECT_TRUE(Cut(bytes, {0, 0, 40, 40}));
}

TEST_F(JpegCutTest, OddSpectralNumbersOfASequentialScanAreHarmless) {
  std::string bytes = Source({40, 40}, {});
  const std::size_t scan = bytes.find("\xFF\xDA");
  bytes[scan + 12] = 0;  // the end of the spectral range, 63 in every sequential file
  EXPECT_TRUE(Cut(bytes, {0, 0, 40, 40}));
}

TEST_F(JpegCutTest, HeadLongerThanOneBlockIsRead) {
  MakeOptions options;
  for (int i = 0; i < 20; ++i) options.segments.emplace_back(JPEG_COM, std::string(60000, 'c'));
  options.segments.emplace_back(JPEG_APP0 + 1, ExifSegment(MinimalExif(8, 0)));
  const std::string bytes = Source({40, 40}, options);
  ExpectAsWholeDecode(bytes, {3, 3, 30, 30}, Output(Colours::YCbCr), {255, 128, 128});
  EXPECT_EQ(SegmentsOf(ReadJpeg(result_), JPEG_APP0 + 1).size(), 1u);
}

TEST_F(JpegCutTest, HundredsOfScans) {
  MakeOptions options;
  options.scans = Scans::Hundreds;
  ExpectAsWholeDecode(Source({64, 48}, options), {3, 5, 20, 20}, Output(Colours::YCbCr), {255, 128, 128});
}

TEST_F(JpegCutTest, TooManyScans) {
  MakeOptions options;
  options.scans = Scans::PerComponent;
  const std::string bytes = Source({32, 32}, options);
  const std::size_t scan = bytes.find("\xFF\xDA");
  const std::string body = bytes.substr(scan, bytes.size() - 2 - scan);
  std::string many = bytes.substr(0, scan);
  for (int i = 0; i < 300; ++i) many += body;
  const Status status = Cut(many + "\xFF\xD9", {0, 0, 8, 8});
  EXPECT_EQ(status.GetProblem(), Problem::Damaged);
  EXPECT_EQ(status.Why(), "不支持的格式：扫描次数过多的 JPEG");
}

// --- Hooks

TEST_F(JpegCutTest, FailureOfTheSinkIsTheResult) {
  const std::string path = folder_.Put("a.jpg", Source({900, 900}, {}));
  int calls = 0;
  const Status status = CutJpeg(path, {0, 0, 900, 900}, 100, 0, Exif::Drop, {}, [&](const void*, std::size_t) {
    return ++calls == 2 ? Status(Problem::DiskFull, "full") : Status::Ok();
  });
  EXPECT_EQ(status.GetProblem(), Problem::DiskFull);
  EXPECT_EQ(status.Why(), "full");
  EXPECT_EQ(calls, 2);
}

TEST_F(JpegCutTest, StopRequestEndsTheCut) {
  std::stop_source stop;
  control_.stop = stop.get_token();
  stop.request_stop();
  MakeOptions options;
  options.scans = Scans::Progressive;
  EXPECT_EQ(Cut(Source({64, 64}, options), {0, 0, 8, 8}).GetProblem(), Problem::Stopped);
  options.scans = Scans::One;
  options.quality = 100;
  EXPECT_EQ(Cut(Source({1200, 900}, options), {0, 800, 8, 8}).GetProblem(), Problem::Stopped);
  EXPECT_TRUE(result_.empty());
}

TEST_F(JpegCutTest, ReadsAreCountedAtTheirBeginAndEnd) {
  host::DiskCalls calls;
  control_.calls = &calls;
  ASSERT_TRUE(Cut(MakeJpeg(TestPicture({600, 400}, Colours::YCbCr), {}), {0, 0, 300, 200}));
  EXPECT_GE(calls.Ended(), 3u);
  EXPECT_FALSE(calls.InFlight());

  // A pipe that nobody writes to stands still as a dead disk does.
  const std::string pipe = folder_.Path("pipe.jpg");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::thread cutter([&] {
    EXPECT_FALSE(CutJpeg(
        pipe, {0, 0, 3, 2}, 80, 0, Exif::Drop, {}, [](const void*, std::size_t) { return Status::Ok(); }, control_));
  });
  while (!calls.InFlight()) std::this_thread::yield();
  std::ofstream(pipe).close();
  cutter.join();
  EXPECT_FALSE(calls.InFlight());
}

TEST_F(JpegCutTest, MemoryIsAnnouncedAndMayBeRefused) {
  std::vector<std::int64_t> asked;
  control_.admit = [&](std::int64_t bytes) {
    asked.push_back(bytes);
    return true;
  };
  MakeOptions options;
  ASSERT_TRUE(Cut(Source({512, 512}, options), {0, 0, 8, 8}));
  options.scans = Scans::Progressive;
  ASSERT_TRUE(Cut(Source({512, 512}, options), {0, 0, 8, 8}));
  ASSERT_EQ(asked.size(), 2u);
  EXPECT_LT(asked[0], 512 * 512);
  EXPECT_GE(asked[1], 512 * 512 * 3);
  control_.admit = [](std::int64_t) { return false; };
  EXPECT_EQ(Cut(Source({512, 512}, options), {0, 0, 8, 8}).GetProblem(), Problem::Stopped);
}

}  // namespace
}  // namespace quillon::imaging
