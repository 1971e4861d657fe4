// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/measure.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <thread>

#include <unistd.h>

#include <jpeglib.h>

#include "host/posix/posix_disk.h"
#include "imaging/jpeg_maker.h"
#include "imaging/little_files.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using namespace testing;

std::string Jpeg(base::Size size, MakeOptions options = {}) {
  options.quality = 40;
  return MakeJpeg(TestPicture(size, options.colours), options);
}

class MeasureTest : public ::testing::Test {
 protected:
  ImageFacts Measured(const std::string& path, Want want = Want::Size) {
    ImageFacts facts{1, 2, 3};
    const Status status = measurer_.Measure(path, facts, want);
    EXPECT_TRUE(status) << path << ": " << status.Why();
    return facts;
  }

  // The facts stay as they were.
  Problem Refused(const std::string& path) {
    ImageFacts facts{11, 22, 33};
    const Status status = measurer_.Measure(path, facts, Want::SizeAndDpi);
    EXPECT_EQ(status.Why().empty(), static_cast<bool>(status));
    EXPECT_EQ(facts.width, 11);
    EXPECT_EQ(facts.height, 22);
    EXPECT_EQ(facts.dpi, 33);
    return status.GetProblem();
  }

  bool Recalls(const std::string& path) const {
    ImageFacts facts;
    return measurer_.Recall(path, facts);
  }

  static base::Size SizeOf(const ImageFacts& facts) { return {facts.width, facts.height}; }

  ScratchFolder folder_;
  host::posix::PosixDisk disk_;
  host::Files files_{disk_};
  int loads_ = 0;
  Measurer measurer_{files_, [this](const std::string& path, ImageFacts& facts) -> Status {
                       ++loads_;
                       if (path.find("bad") != std::string::npos) return {Problem::Damaged, "bad"};
                       if (path.ends_with(".jpg")) return {Problem::Unsupported, "no picture"};
                       facts = {640, 480, 300};
                       return Status::Ok();
                     }};
};

TEST_F(MeasureTest, EveryFormat) {
  EXPECT_EQ(SizeOf(Measured(folder_.Put("a.jpg", Jpeg({33, 44})))), (base::Size{33, 44}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("a.png", Png(1200, 44, "")))), (base::Size{1200, 44}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("a.bmp", Bmp(31, 17, 0)))), (base::Size{31, 17}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("a.gif", Gif(320, 99)))), (base::Size{320, 99}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("i.tif", Tiff(false, 31, 17, 72, 2)))), (base::Size{31, 17}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("m.tif", Tiff(true, 310, 170, 72, 2)))), (base::Size{310, 170}));
}

TEST_F(MeasureTest, NumbersWithBlanks) {
  EXPECT_EQ(SizeOf(Measured(folder_.Put("wide.jpg", Jpeg({3840, 9})))), (base::Size{3840, 9}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("tall.jpg", Jpeg({8, 12345})))), (base::Size{8, 12345}));
}

TEST_F(MeasureTest, WrongExtensionIsMeasuredByContent) {
  EXPECT_EQ(SizeOf(Measured(folder_.Put("is_jpeg.png", Jpeg({33, 44})))), (base::Size{33, 44}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("is_bmp.jpg", Bmp(31, 17, 0)))), (base::Size{31, 17}));
  EXPECT_EQ(SizeOf(Measured(folder_.Put("none", Jpeg({35, 46})))), (base::Size{35, 46}));
}

TEST_F(MeasureTest, NumberedPicturesAreNoSequence) {
  for (int i = 1; i <= 37; ++i) {
    const std::string name = (i < 10 ? "p00" : "p0") + std::to_string(i) + ".jpg";
    folder_.Put(name, Jpeg({100 + i, 50 + i}));
  }
  EXPECT_EQ(SizeOf(Measured(folder_.Path("p001.jpg"))), (base::Size{101, 51}));
  EXPECT_EQ(SizeOf(Measured(folder_.Path("p020.jpg"))), (base::Size{120, 70}));
  EXPECT_EQ(SizeOf(Measured(folder_.Path("p037.jpg"))), (base::Size{137, 87}));
}

TEST_F(MeasureTest, NamesAreBytesInAnyLocale) {
  const std::string names[] = {"照片.jpg",
                               "\xD5\xD5\xC6\xAC.jpg",
                               "%d [1].jpg",
                               "-x.jpg",
                               "line\nbreak.jpg",
                               "Width 7 pixels Height 9 pixels.jpg",
                               std::string(251, 'n') + ".jpg"};
  ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
  for (const std::string& name : names) {
    EXPECT_EQ(SizeOf(Measured(folder_.Put(name, Jpeg({33, 44})))), (base::Size{33, 44})) << name;
  }
}

TEST_F(MeasureTest, Refusals) {
  EXPECT_EQ(Refused(folder_.Path("missing.jpg")), Problem::Missing);
  EXPECT_EQ(Refused(folder_.Put("empty.jpg", "")), Problem::Damaged);
  EXPECT_EQ(Refused(folder_.Put("text.jpg", "this is no picture at all")), Problem::Unsupported);
  EXPECT_EQ(Refused(folder_.Put("short.jpg", Jpeg({33, 44}).substr(0, 30))), Problem::Unsupported);
  std::filesystem::create_directory(folder_.Path("folder.jpg"));
  EXPECT_EQ(Refused(folder_.Path("folder.jpg")), Problem::Unsupported);
  // The object goes on working after a failure.
  EXPECT_EQ(SizeOf(Measured(folder_.Put("good.jpg", Jpeg({33, 44})))), (base::Size{33, 44}));
}

TEST_F(MeasureTest, UnreadableFile) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const std::string path = folder_.Put("locked.jpg", Jpeg({33, 44}));
  std::filesystem::permissions(path, std::filesystem::perms::none);
  EXPECT_EQ(Refused(path), Problem::Denied);
}

TEST_F(MeasureTest, PsdGoesThroughTheLoader) {
  const ImageFacts facts = Measured(folder_.Put("a.psd", "8BPS"));
  EXPECT_EQ(SizeOf(facts), (base::Size{640, 480}));
  EXPECT_EQ(facts.dpi, 300);
  EXPECT_EQ(Refused(folder_.Put("bad.psd", "8BPS")), Problem::Damaged);
  EXPECT_EQ(loads_, 2);
  Measured(folder_.Path("a.psd"), Want::SizeAndDpi);
  EXPECT_EQ(loads_, 2);  // remembered, resolution and all
}

TEST_F(MeasureTest, PsdInCapitalsGoesThroughTheLoaderToo) {
  // Complete, so that MediaInfo would return its size and no resolution.
  const std::string psd = "8BPS" + Big(1, 2) + std::string(6, '\0') + Big(3, 2) + Big(43, 4) + Big(61, 4) + Big(8, 2) +
                          Big(3, 2) + Big(0, 4) + Big(0, 4) + Big(0, 4) + Big(0, 2) +
                          std::string(std::size_t{61} * 43 * 3, '\0');
  const ImageFacts facts = Measured(folder_.Put("B.PSD", psd), Want::SizeAndDpi);
  EXPECT_EQ(SizeOf(facts), (base::Size{640, 480}));
  EXPECT_EQ(facts.dpi, 300);
}

TEST_F(MeasureTest, AnswerIsRememberedUntilSizeTimeOrFileChanges) {
  const std::string path = folder_.Put("a.jpg", Jpeg({33, 44}));
  EXPECT_FALSE(Recalls(path));
  Measured(path);
  EXPECT_TRUE(Recalls(path));

  const auto time = std::filesystem::last_write_time(path);
  std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
  EXPECT_FALSE(Recalls(path));
  Measured(path);

  // Other content with the old time: the size shows the change.
  folder_.Put("a.jpg", Jpeg({35, 46}) + "x");
  std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
  EXPECT_EQ(SizeOf(Measured(path)), (base::Size{35, 46}));

  // Another file of the same size and time under the name.
  const std::string content = Jpeg({33, 44});
  folder_.Put("a.jpg", content);
  std::filesystem::last_write_time(path, time);
  Measured(path);
  const std::string twin = folder_.Put("twin.jpg", content);
  std::filesystem::last_write_time(twin, time);
  std::filesystem::rename(twin, path);
  EXPECT_FALSE(Recalls(path));
}

TEST_F(MeasureTest, ContentThatKeptItsTimesIsMeasuredAgain) {
  std::string one = Jpeg({33, 44});
  std::string other = Jpeg({43, 34});
  one.resize(std::max(one.size(), other.size()), 'x');
  other.resize(one.size(), 'x');
  const std::string path = folder_.Put("a.jpg", one);
  const auto time = std::filesystem::last_write_time(path);
  Measured(path);
  const std::optional<host::FileFacts> before = files_.Stat(path);
  // Same inode, size and modified time. The system's clock for changes moves in steps, so this may need a few rounds.
  do {
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary) << other;
    std::filesystem::last_write_time(path, time);
  } while (files_.Stat(path)->changed == before->changed);
  EXPECT_EQ(files_.Stat(path)->modified, before->modified);
  EXPECT_EQ(SizeOf(Measured(path)), (base::Size{43, 34}));
}

TEST_F(MeasureTest, FilesThatMediaInfoCannotMeasureAreOpened) {
  const std::string path = folder_.Put("odd.xyz", "nothing that a report would give the size of");
  EXPECT_EQ(SizeOf(Measured(path)), (base::Size{640, 480}));
  EXPECT_EQ(loads_, 1);
  EXPECT_EQ(Measured(path).dpi, 0);
  EXPECT_EQ(loads_, 1);
  EXPECT_EQ(Refused(folder_.Put("bad.xyz", "nor this")), Problem::Damaged);
}

TEST_F(MeasureTest, OtherKindsAreAskedForFilesWithoutAKnownHeader) {
  std::vector<std::string> asked;
  Measurer measurer(
      files_,
      [](const std::string&, ImageFacts&) -> Status {
        return {Problem::Unsupported, "no picture"};
      },
      [&](const std::string& path, const Measurer::KeepWaiting& keepWaiting, base::Size& size) -> Status {
        asked.push_back(path);
        if (!keepWaiting()) return {Problem::Stopped, "stopped"};
        if (path.ends_with("none")) return {Problem::Unsupported, "none"};
        if (path.ends_with("bad")) return {Problem::Damaged, "bad"};
        size = {61, 43};
        return Status::Ok();
      });
  const auto measure = [&](const std::string& path, bool waits) {
    ImageFacts facts;
    return measurer.Measure(path, facts, Want::Size, [waits] { return waits; }).GetProblem();
  };
  EXPECT_EQ(measure(folder_.Put("a.jpg", Jpeg({33, 44})), true), Problem::None);
  EXPECT_EQ(measure(folder_.Put("short.jpg", Jpeg({33, 44}).substr(0, 30)), true), Problem::Unsupported);
  EXPECT_TRUE(asked.empty());
  const std::string tga = folder_.Put("a.tga", Tga(61, 43));
  EXPECT_EQ(measure(tga, false), Problem::Stopped);
  EXPECT_EQ(measure(tga, true), Problem::None);
  EXPECT_EQ(measure(tga, true), Problem::None);
  EXPECT_EQ(asked, (std::vector<std::string>{tga, tga})) << "a success is remembered";
  EXPECT_EQ(measure(folder_.Put("a.none", "?"), true), Problem::Unsupported);
  EXPECT_EQ(measure(folder_.Put("a.bad", "?"), true), Problem::Damaged);
}

TEST_F(MeasureTest, ResolutionOnRequestOnly) {
  MakeOptions options;
  options.densityUnit = 1;
  options.density = 300;
  const std::string path = folder_.Put("a.jpg", Jpeg({33, 44}, options));
  EXPECT_EQ(Measured(path).dpi, 0);
  EXPECT_EQ(Measured(path, Want::SizeAndDpi).dpi, 300);
  EXPECT_EQ(Measured(path, Want::SizeAndDpi).dpi, 300);
  EXPECT_EQ(Measured(path).dpi, 0);
  EXPECT_EQ(Measured(folder_.Put("none.jpg", Jpeg({33, 44})), Want::SizeAndDpi).dpi, 0);
}

TEST_F(MeasureTest, SeveralThreadsAtOnce) {
  constexpr int kFiles = 40;
  for (int i = 0; i < kFiles; ++i) folder_.Put(std::to_string(i), Jpeg({10 + i, 20 + i}));
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < kFiles; ++i) {
        const int n = (i * 7 + t * 10) % kFiles;
        ImageFacts facts;
        EXPECT_TRUE(measurer_.Measure(folder_.Path(std::to_string(n)), facts));
        EXPECT_EQ(facts.width, 10 + n);
        EXPECT_EQ(facts.height, 20 + n);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// The resolution that the header of a file states; 0 if there is no such file.
int ReadDpi(const std::string& path) {
  std::shared_ptr<FileBytes> bytes;
  HeaderFacts facts;
  if (FileBytes::Open(path, bytes)) ReadHeader(*bytes, facts);
  return facts.dpi;
}

TEST(MeasureDpiTest, FromHeaders) {
  struct Case {
    std::string bytes;
    int dpi;
  };
  MakeOptions exifOnly;
  exifOnly.jfif = false;
  exifOnly.segments = {{JPEG_COM, std::string(65000, 'c')},
                       {JPEG_APP0 + 1, std::string("Exif\0\0", 6) + MinimalExif(1, 240)}};
  const Case cases[] = {{Jpeg({9, 9}, exifOnly), 240},
                        {Jpeg({9, 9}, exifOnly).substr(0, 60000), 0},
                        {Png(5, 5, Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + Big(1, 1))), 300},
                        {Png(5, 5, Chunk("tEXt", "x") + Chunk("pHYs", Big(10000, 4) + Big(1, 4) + Big(1, 1))), 254},
                        {Png(5, 5, Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + Big(0, 1))), 0},  // a ratio
                        {Png(5, 5, Chunk("IDAT", "") + Chunk("pHYs", Big(11811, 4) + Big(0, 4) + Big(1, 1))), 0},
                        {Png(5, 5, "").substr(0, 20), 0},
                        {Bmp(5, 5, 2835), 72},
                        {Bmp(5, 5, 0), 0},
                        {"BM" + std::string(12, '\0') + Little(12, 4) + std::string(40, '\x22'), 0},  // no such fields
                        {Tiff(false, 5, 5, 300, 2), 300},
                        {Tiff(true, 5, 5, 300, 2), 300},
                        {Tiff(true, 5, 5, 100, 3), 254},
                        {Tiff(true, 5, 5, 300, 1), 0},  // no unit
                        {Tiff(false, 5, 5, 0, 2), 0},
                        {Tiff(false, 5, 5, 300, 2).substr(0, 60), 0},
                        {BigTiff(false, 600), 600},
                        {BigTiff(true, 600), 600},
                        {"GIF89a", 0},
                        {"", 0}};
  const ScratchFolder folder;
  int number = 0;
  for (const Case& c : cases) {
    EXPECT_EQ(ReadDpi(folder.Put(std::to_string(number), c.bytes)), c.dpi) << "case " << number;
    ++number;
  }
  EXPECT_EQ(ReadDpi(folder.Path("missing")), 0);
}

}  // namespace
}  // namespace quillon::imaging
