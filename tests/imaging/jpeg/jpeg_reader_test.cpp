// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg_maker.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using testing::Colours;
using testing::MakeOptions;
using testing::Scans;

// Kilobytes of this process that are to be laid in large pages.
long Advised() {
  std::ifstream maps("/proc/self/smaps");
  long size = 0;
  long sum = 0;
  for (std::string line; std::getline(maps, line);) {
    if (line.starts_with("Size:")) size = std::stol(line.substr(5));
    if (line.starts_with("VmFlags:") && line.find(" hg") != std::string::npos) sum += size;
  }
  return sum;
}

class JpegPagesTest : public ::testing::Test {
 protected:
  Status Cut(const std::string& bytes, base::Rect rect, const std::function<void()>& look) {
    const ByteSink sink = [&](const void* data, std::size_t size) {
      look();
      result_.append(static_cast<const char*>(data), size);
      return Status::Ok();
    };
    return CutJpeg(folder_.Put("source.jpg", bytes), rect, 80, 0, Exif::Drop, {}, sink);
  }

  static std::string Source(base::Size size, Scans scans) {
    MakeOptions options;
    options.colours = Colours::Grey;
    options.scans = scans;
    return MakeJpeg(testing::TestPicture(size, options.colours), options);
  }

  testing::ScratchFolder folder_;
  std::string result_;
};

// 8 x 8 samples are 128 bytes: 288 x 160 blocks are 5760 KB.
TEST_F(JpegPagesTest, CoefficientsOfALargePictureAreLaidInLargePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) GTEST_SKIP() << "the system has none";
  const long before = Advised();
  long most = 0;
  const auto look = [&] { most = std::max(most, Advised() - before); };
  ASSERT_TRUE(Cut(Source({2304, 1280}, Scans::Progressive), {0, 0, 2304, 1280}, look));
  EXPECT_GE(most, 5760 - 4);
}

TEST_F(JpegPagesTest, SmallPicturesAreLeftAlone) {
  const long before = Advised();
  const auto look = [&] { EXPECT_EQ(Advised(), before); };
  ASSERT_TRUE(Cut(Source({640, 480}, Scans::Progressive), {0, 0, 640, 480}, look));
}

class JpegPagesScansTest : public JpegPagesTest, public ::testing::WithParamInterface<Scans> {};

TEST_P(JpegPagesScansTest, TheResultIsThatOfTheWholeDecode) {
  const std::string source = Source({2304, 1280}, GetParam());
  for (const base::Rect rect : {base::Rect{230, 128, 1840, 1024}, base::Rect{1001, 903, 33, 35}}) {
    result_.clear();
    ASSERT_TRUE(Cut(source, rect, [] {}));
    MakeOptions options;
    options.colours = Colours::Grey;
    options.quality = 80;
    const testing::Pixels wanted = testing::CutPixels(testing::ReadJpeg(source).pixels, rect, {255});
    EXPECT_TRUE(testing::ReadJpeg(result_).pixels == testing::ReadJpeg(MakeJpeg(wanted, options)).pixels);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, JpegPagesScansTest, ::testing::Values(Scans::One, Scans::Progressive));

}  // namespace
}  // namespace quillon::imaging
