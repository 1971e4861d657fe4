// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_pixels.h"

#include <gtest/gtest.h>

#include <vector>

#include "host/testing/test_host.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg_maker.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::Colours;
using testing::MakeOptions;
using testing::Scans;

std::string Source(base::Size size, const MakeOptions& options) {
  return MakeJpeg(testing::TestPicture(size, options.colours), options);
}

class JpegPixelsTest : public ::testing::Test {
 protected:
  // What a stream of rows, a whole decode and a cut report of a file.
  std::vector<Problem> ProblemsOf(const std::string& bytes, const Limits& limits = {}) {
    const std::string path = folder_.Put("source.jpg", bytes);
    JpegPixels pixels;
    const auto sink = [](const void*, std::size_t) { return Status::Ok(); };
    return {ReadRows(path, limits).GetProblem(), DecodeJpeg(world_.files, path, limits, pixels).GetProblem(),
            CutJpeg(path, {0, 0, 8, 8}, 80, 0, Exif::Drop, limits, sink).GetProblem()};
  }
  static Status ReadRows(const std::string& path, const Limits& limits) {
    std::shared_ptr<RowStream> rows;
    if (Status opened = OpenJpegRows(path, 1, limits, rows); !opened) return opened;
    return rows->SkipRows(rows->Facts().size.height);
  }
  static std::vector<Problem> All(Problem problem) { return std::vector<Problem>(3, problem); }

  testing::ScratchFolder folder_;
  host::testing::TestHost world_;
};

class JpegPixelsScansTest : public JpegPixelsTest, public ::testing::WithParamInterface<Scans> {};

TEST_P(JpegPixelsScansTest, SamplesAreThoseOfThePlainDecode) {
  for (const Colours colours : {Colours::Grey, Colours::YCbCr, Colours::Rgb, Colours::AdobeCmyk, Colours::Ycck}) {
    const bool tooMany = GetParam() == Scans::Hundreds && testing::ComponentsOf(colours) == 4;  // 506, at most 500
    if (tooMany) continue;
    MakeOptions options;
    options.colours = colours;
    options.scans = GetParam();
    const std::string bytes = Source({45, 37}, options);
    JpegPixels pixels;
    const Status status = DecodeJpeg(world_.files, folder_.Put("source.jpg", bytes), {}, pixels);
    ASSERT_TRUE(status) << status.Why();
    EXPECT_EQ(pixels.samples, testing::ReadJpeg(bytes).pixels.samples);
  }
}

TEST_P(JpegPixelsScansTest, ALargePictureIsInTilesAndReadsTheSame) {
  MakeOptions options;
  options.scans = GetParam();
  const std::string path = folder_.Put("source.jpg", Source({245, 37}, options));
  Limits small;
  small.pixelsInMemory = 245 * 37 - 1;
  JpegPixels whole;
  JpegPixels tiled;
  ASSERT_TRUE(DecodeJpeg(world_.files, path, {}, whole));
  ASSERT_TRUE(DecodeJpeg(world_.files, path, small, tiled));
  EXPECT_FALSE(whole.tiles);
  EXPECT_TRUE(tiled.tiles);
  EXPECT_TRUE(tiled.samples.empty());
  for (const base::Rect& area : {base::Rect{0, 0, 245, 37}, base::Rect{100, 3, 60, 20}, base::Rect{244, 36, 1, 1}}) {
    const std::size_t step = static_cast<std::size_t>(area.width) * 3;
    std::vector<unsigned char> expected(step * static_cast<std::size_t>(area.height));
    std::vector<unsigned char> read(expected.size());
    ASSERT_TRUE(whole.Read(area, expected.data(), step));
    ASSERT_TRUE(tiled.Read(area, read.data(), step));
    EXPECT_EQ(read, expected);
  }
}

TEST_P(JpegPixelsScansTest, RowsAreReduced) {
  MakeOptions options;
  options.scans = GetParam();
  const std::string path = folder_.Put("source.jpg", Source({45, 37}, options));
  for (const int shrink : {1, 2, 4, 8}) {
    std::shared_ptr<RowStream> rows;
    ASSERT_TRUE(OpenJpegRows(path, shrink, {}, rows));
    EXPECT_EQ(rows->Facts().size, (base::Size{(45 + shrink - 1) / shrink, (37 + shrink - 1) / shrink}));
    EXPECT_TRUE(rows->SkipRows(rows->Facts().size.height));
  }
}

INSTANTIATE_TEST_SUITE_P(All, JpegPixelsScansTest,
                         ::testing::Values(Scans::One, Scans::Progressive, Scans::PerComponent, Scans::Hundreds));

TEST_F(JpegPixelsTest, TooManyScansAreDamageToEveryReader) {
  MakeOptions options;
  options.scans = Scans::PerComponent;
  const std::string bytes = Source({32, 32}, options);
  const std::size_t scan = bytes.find("\xFF\xDA");
  const std::string body = bytes.substr(scan, bytes.size() - 2 - scan);
  std::string many = bytes.substr(0, scan);
  for (int i = 0; i < 300; ++i) many += body;
  EXPECT_EQ(ProblemsOf(many + "\xFF\xD9"), All(Problem::Damaged));
}

TEST_F(JpegPixelsTest, LimitsAreThoseOfTheCut) {
  MakeOptions options;
  options.scans = Scans::Progressive;
  const std::string bytes = Source({100, 60}, options);
  Limits limits;
  limits.side = 99;
  EXPECT_EQ(ProblemsOf(bytes, limits), All(Problem::TooLarge));
  limits = {};
  limits.jpegSide = 99;
  EXPECT_EQ(ProblemsOf(bytes, limits), All(Problem::TooLarge));
  limits = {};
  limits.pixels = 5999;
  EXPECT_EQ(ProblemsOf(bytes, limits), All(Problem::TooLarge));
  limits = {};
  limits.memory = 30000;
  EXPECT_EQ(ProblemsOf(bytes, limits), All(Problem::TooLarge));
}

TEST_F(JpegPixelsTest, DamageIsFoundByEveryReader) {
  for (const Scans scans : {Scans::One, Scans::Progressive}) {
    MakeOptions options;
    options.scans = scans;
    const std::string bytes = Source({90, 120}, options);
    for (const std::size_t size : {bytes.size() / 2, bytes.size() - 2}) {
      EXPECT_EQ(ProblemsOf(bytes.substr(0, size)), All(Problem::Damaged)) << size;
    }
  }
  EXPECT_EQ(ProblemsOf("no picture"), All(Problem::Unsupported));
}

}  // namespace
}  // namespace quillon::imaging
