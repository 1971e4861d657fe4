// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Several crops from one decode: each writes the same file as a separate crop.
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "host/testing/open_watch.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::Colours;
using testing::MakeJpeg;
using testing::MakeOptions;
using testing::Scans;
using testing::TestPicture;

// Small and large parts of a picture of 203 x 151, at even and odd positions, across each side, and outside.
const std::vector<base::Rect> kParts = {{0, 0, 203, 151}, {0, 0, 100, 75},   {100, 74, 103, 77}, {17, 33, 20, 21},
                                        {40, 41, 1, 1},   {-5, -7, 60, 50},  {180, 130, 40, 40}, {-9, 20, 220, 9},
                                        {50, -9, 9, 170}, {300, 20, 30, 30}, {20, 16, 160, 120}};

class CutSourceTest : public testing::ServicesTest {
 protected:
  std::string Jpeg(const MakeOptions& options) {
    return world.folder.Write("in.jpg", MakeJpeg(TestPicture({203, 151}, options.colours), options));
  }
  CropRequest Request(const std::string& source, base::Rect rect, const std::string& extension) {
    CropRequest request;
    request.source = source;
    request.rect = rect;
    request.destination = Path("out." + extension);
    request.encoder = EncoderFor(extension);
    return request;
  }
  // Returns the bytes that a crop writes, "" if it fails.
  std::string Written(const CropRequest& request, const Status& status) {
    EXPECT_EQ(static_cast<bool>(status), world.files.IsFile(request.destination)) << status.Why();
    return status ? world.folder.Read(request.destination.substr(Path("").size())) : std::string();
  }
  void ExpectSame(const std::string& path, const std::string& extension, int quality) {
    CutSource source;
    const Status opened = services.OpenForCuts(path, EncoderFor(extension), source);
    ASSERT_TRUE(opened) << opened.Why();
    for (const base::Rect& rect : kParts) {
      CropRequest request = Request(path, rect, extension);
      request.quality = quality;
      const std::string alone = Written(request, services.CropToFile(request));
      EXPECT_FALSE(alone.empty());
      ASSERT_EQ(alone, Written(request, services.CropToFile(source, request)))
          << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height << " at " << quality;
    }
  }
};

struct Kind {
  Colours colours;
  std::pair<int, int> luma;
  Scans scans;
};

class CutSourceKinds : public CutSourceTest, public ::testing::WithParamInterface<Kind> {};

TEST_P(CutSourceKinds, JpegsAreTheSameByteForByte) {
  MakeOptions options;
  options.colours = GetParam().colours;
  options.luma = GetParam().luma;
  options.scans = GetParam().scans;
  options.densityUnit = 1;
  options.density = 240;
  const std::string path = Jpeg(options);
  ExpectSame(path, "jpg", 80);
  ExpectSame(path, "jpg", 95);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, CutSourceKinds,
    ::testing::Values(Kind{Colours::YCbCr, {2, 2}, Scans::One}, Kind{Colours::YCbCr, {1, 1}, Scans::One},
                      Kind{Colours::YCbCr, {2, 1}, Scans::One}, Kind{Colours::YCbCr, {2, 2}, Scans::Progressive},
                      Kind{Colours::Grey, {1, 1}, Scans::One}, Kind{Colours::Rgb, {1, 1}, Scans::One},
                      Kind{Colours::Cmyk, {1, 1}, Scans::One}, Kind{Colours::AdobeCmyk, {1, 1}, Scans::One},
                      Kind{Colours::Ycck, {2, 2}, Scans::One}));

TEST_F(CutSourceTest, OtherTypesAreTheSameByteForByte) {
  const std::string jpeg = Jpeg({});
  for (const char* extension : {"png", "bmp", "tif", "gif"}) ExpectSame(jpeg, extension, 80);
  Image image;
  ASSERT_TRUE(services.LoadImageFromFile(jpeg, image));
  ASSERT_TRUE(services.SaveImageToPngFile(image, Path("in.png")));
  ExpectSame(Path("in.png"), "jpg", 80);
}

TEST_F(CutSourceTest, AFileThatHasChangedIsCutAsItIsNow) {
  const std::string path = Jpeg({});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source));
  MakeOptions grey;
  grey.colours = Colours::Grey;
  grey.luma = {1, 1};
  Jpeg(grey);
  const CropRequest request = Request(path, {10, 10, 50, 40}, "jpg");
  const std::string alone = Written(request, services.CropToFile(request));
  EXPECT_EQ(alone, Written(request, services.CropToFile(source, request)));
}

TEST_F(CutSourceTest, AnotherTypeThanItWasOpenedForIsCutAsWell) {
  const std::string path = Jpeg({});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source));
  const CropRequest request = Request(path, {10, 10, 50, 40}, "png");
  const std::string alone = Written(request, services.CropToFile(request));
  EXPECT_EQ(alone, Written(request, services.CropToFile(source, request)));
  EXPECT_EQ(alone, Written(request, services.CropToFile(CutSource(), request)));
}

TEST_F(CutSourceTest, DamageIsFoundAndNothingIsWritten) {
  const std::string bytes = MakeJpeg(TestPicture({203, 151}, Colours::YCbCr), {});
  const std::string path = world.folder.Write("in.jpg", bytes.substr(0, bytes.size() / 2));
  CutSource source;
  EXPECT_EQ(services.OpenForCuts(path, Encoder::Jpeg, source).GetProblem(), Problem::Damaged);
  EXPECT_EQ(services.OpenForCuts(Path("none.jpg"), Encoder::Jpeg, source).GetProblem(), Problem::Missing);
  EXPECT_EQ(services.OpenForCuts(world.folder.Write("notes.jpg", "no picture"), Encoder::Jpeg, source).GetProblem(),
            Problem::Unsupported);
}

TEST_F(CutSourceTest, WhatMemoryMayNotHoldIsNotOpened) {
  Limits limits;
  limits.memory = 203 * 151 * 3 - 1;
  Services small(world.files, world.host.programFolder, {}, limits);
  CutSource source;
  EXPECT_EQ(small.OpenForCuts(Jpeg({}), Encoder::Jpeg, source).GetProblem(), Problem::TooLarge);
}

TEST_F(CutSourceTest, AnEmptyRectangleIsRefused) {
  const std::string path = Jpeg({});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source));
  EXPECT_FALSE(services.CropToFile(source, Request(path, {0, 0, 0, 5}, "jpg")));
}

// --- Crops that were prefetched.

class PrefetchedCutsTest : public CutSourceTest {
 protected:
  FileWork WorkOf(const std::string& path, const std::string& extension) {
    FileWork work;
    for (const base::Rect& rect : kParts) work.steps.emplace_back(Request(path, rect, extension));
    return work;
  }
};

TEST_F(PrefetchedCutsTest, AreTheSameByteForByteAndNothingIsReadAgain) {
  const std::string path = Jpeg({});
  for (const char* extension : {"jpg", "png", "gif", "tif", "bmp"}) {
    SCOPED_TRACE(extension);
    std::vector<std::string> alone;
    for (const base::Rect& rect : kParts) {
      const CropRequest request = Request(path, rect, extension);
      alone.push_back(Written(request, services.CropToFile(request)));
    }
    const FileWork work = WorkOf(path, extension);
    services.PlanWork({work});
    CutSource source;
    ASSERT_TRUE(services.OpenForCuts(path, EncoderFor(extension), source, work));
    host::testing::OpenWatch reads(path);
    for (std::size_t i = 0; i < kParts.size(); ++i) {
      const CropRequest request = Request(path, kParts[i], extension);
      EXPECT_TRUE(alone[i] == Written(request, services.CropToFile(source, request))) << i;
    }
    EXPECT_FALSE(reads.Opened());
  }
}

TEST_F(PrefetchedCutsTest, AnyOtherRequestReadsTheFile) {
  const std::string path = Jpeg({});
  const FileWork work = WorkOf(path, "jpg");
  services.PlanWork({work});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source, work));
  CropRequest request = Request(path, kParts[1], "jpg");
  request.quality = 50;
  const std::string alone = Written(request, services.CropToFile(request));
  host::testing::OpenWatch reads(path);
  EXPECT_TRUE(alone == Written(request, services.CropToFile(source, request)));
  EXPECT_TRUE(reads.Opened());
}

TEST_F(PrefetchedCutsTest, AFileThatHasChangedIsCutAsItIsNow) {
  const std::string path = Jpeg({});
  const FileWork work = WorkOf(path, "jpg");
  services.PlanWork({work});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source, work));
  MakeOptions grey;
  grey.colours = Colours::Grey;
  grey.luma = {1, 1};
  Jpeg(grey);
  const CropRequest request = Request(path, {10, 10, 50, 40}, "jpg");
  const std::string alone = Written(request, services.CropToFile(request));
  EXPECT_EQ(alone, Written(request, services.CropToFile(source, request)));
}

TEST_F(PrefetchedCutsTest, WithoutAPlanTheSourceIsDecoded) {
  const std::string path = Jpeg({});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source, WorkOf(path, "jpg")));
  for (const base::Rect& rect : kParts) {
    const CropRequest request = Request(path, rect, "jpg");
    EXPECT_FALSE(Written(request, services.CropToFile(source, request)).empty());
  }
}

TEST_F(PrefetchedCutsTest, OneCropThatFailsLeavesAllToTheCaller) {
  const std::string path = Jpeg({});
  FileWork work = WorkOf(path, "jpg");
  work.steps.emplace_back(Request(path, {0, 0, 0, 5}, "jpg"));
  services.PlanWork({work});
  CutSource source;
  ASSERT_TRUE(services.OpenForCuts(path, Encoder::Jpeg, source, work));
  const CropRequest request = Request(path, kParts[1], "jpg");
  EXPECT_FALSE(Written(request, services.CropToFile(source, request)).empty());
}

// The work lasts until the stop was seen.
TEST_F(PrefetchedCutsTest, AStopRequestEndsTheWait) {
  const std::string path = Jpeg({});
  const auto caller = std::this_thread::get_id();
  bool stop = false;
  std::promise<void> begun;
  std::promise<void> released;
  bool first = true;
  const auto hang = [&] {
    if (std::this_thread::get_id() == caller || !std::exchange(first, false)) return;
    begun.set_value();
    released.get_future().wait();
  };
  for (const int nth : {1, 2, 3}) world.faults.Before(host::testing::DiskCall::Stat, nth, hang, "in.jpg");
  host::WaitHooks hooks;
  hooks.idle = [&] {
    if (!stop) begun.get_future().wait();
    stop = true;
  };
  hooks.stopped = [&] { return stop; };
  host::DiskThread thread(hooks);
  Services waiting(world.files, world.host.programFolder, &thread);
  const FileWork work = WorkOf(path, "jpg");
  waiting.PlanWork({work});
  CutSource source;
  EXPECT_EQ(waiting.OpenForCuts(path, Encoder::Jpeg, source, work).GetProblem(), Problem::Stopped);
  EXPECT_EQ(source.Data(), nullptr);
  released.set_value();
}

}  // namespace
}  // namespace quillon::imaging
