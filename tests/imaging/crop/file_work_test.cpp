// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/file_requests.h"

#include <limits>
#include <thread>

#include "imaging/crop/work_memory.h"
#include "imaging/io/bytes.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using namespace testing;

constexpr Encoder kEncoders[] = {Encoder::Jpeg, Encoder::Png, Encoder::Gif, Encoder::Tiff, Encoder::Bmp};

class FileWorkTest : public ServicesTest {
 protected:
  // Sources of every kind that is read: samples, alpha, inks, progressive, interlaced.
  std::vector<std::string> Sources() {
    const Sheet rgb = PhotoLike(83, 61, 3);
    ToVips(rgb).pngsave(Path("rgb.png").c_str());
    ToVips(rgb).pngsave(Path("interlaced.png").c_str(), vips::VImage::option()->set("interlace", true));
    ToVips(PhotoLike(83, 61, 4)).pngsave(Path("alpha.png").c_str());
    ToVipsDeep(PhotoLike(83, 61, 3, 65535)).pngsave(Path("deep.png").c_str());
    ToVips(PhotoLike(83, 61, 1), VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
    ToVips(PhotoLike(83, 61, 4), VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
    ToVips(rgb).gifsave(Path("a.gif").c_str());
    world.folder.Write("one.jpg", MakeJpeg(TestPicture({83, 61}, Colours::YCbCr), {}));
    MakeOptions progressive;
    progressive.scans = Scans::Progressive;
    world.folder.Write("scans.jpg", MakeJpeg(TestPicture({83, 61}, Colours::YCbCr), progressive));
    std::vector<std::string> paths;
    for (const char* name : {"rgb.png", "interlaced.png", "alpha.png", "deep.png", "grey.tif", "ink.tif", "a.gif",
                             "one.jpg", "scans.jpg"}) {
      paths.push_back(Path(name));
    }
    return paths;
  }

  // The outputs of a work that is done in memory.
  std::vector<std::string> Do(const FileWork& work, const ReadControl& control = {}) {
    std::vector<std::unique_ptr<MemoryDraft>> drafts;
    WorkHooks hooks;
    hooks.admit = [](std::int64_t, std::int64_t) { return true; };
    hooks.output = [&]() -> host::Draft& {
      drafts.push_back(std::make_unique<MemoryDraft>([](std::int64_t) { return Status::Ok(); }));
      return *drafts.back();
    };
    status_ = DoWork(work, {world.files, {}, control}, hooks);
    std::vector<std::string> outputs;
    for (const auto& draft : drafts) outputs.push_back(draft->Release());
    return outputs;
  }
  // The only output of a work against the file that an operation has written.
  void ExpectAs(const FileWork& work, const std::string& file) {
    const std::vector<std::string> outputs = Do(work, {.threads = 1});
    ASSERT_TRUE(status_) << status_.Why();
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_TRUE(outputs[0] == world.folder.Read(file));
  }
  CropRequest Crop(const std::string& source, base::Rect rect, Encoder encoder) const {
    CropRequest request;
    request.source = source;
    request.destination = Path("out");
    request.rect = rect;
    request.encoder = encoder;
    return request;
  }
  BorderRequest Border(const std::string& source, const std::string& destination) const {
    BorderRequest request;
    request.source = source;
    request.destination = destination;
    request.image = {83, 61};
    request.drawn = {60, 44};
    request.total = {90, 70};
    request.offsetX = 11;
    request.offsetY = 7;
    request.colour = {0x2040F0};
    return request;
  }

  Status status_;
};

TEST_F(FileWorkTest, ACropIsThatOfCropToFile) {
  for (const std::string& source : Sources()) {
    for (const Encoder encoder : kEncoders) {
      for (const base::Rect rect : {base::Rect{5, 6, 60, 40}, base::Rect{-4, -3, 100, 80}}) {
        SCOPED_TRACE(source + " " + std::to_string(static_cast<int>(encoder)));
        CropRequest request = Crop(source, rect, encoder);
        request.exif = Exif::Keep;
        request.dpi = rect.left < 0 ? 300 : 0;
        ASSERT_TRUE(services.CropToFile(request));
        ExpectAs({{request}}, "out");
        ASSERT_TRUE(services.CropToGif(request));
        ExpectAs({{Services::AsGif(request)}}, "out");
      }
    }
  }
}

TEST_F(FileWorkTest, ABorderIsThatOfAddBoardToFile) {
  for (const std::string& source : Sources()) {
    for (const char* name : {"out.jpg", "out.png", "out.gif", "out.tif", "out.bmp"}) {
      SCOPED_TRACE(source + name);
      BorderRequest request = Border(source, Path(name));
      ASSERT_TRUE(services.AddBoardToFile(request));
      ExpectAs({{request}}, name);
    }
    BorderRequest turned = Border(source, Path("out.png"));
    turned.rotation = 17;
    turned.scale = 0.5;
    ASSERT_TRUE(services.AddBoardToFile(turned));
    ExpectAs({{turned}}, "out.png");
  }
}

TEST_F(FileWorkTest, AZoomIsThatOfZoomPic) {
  for (const std::string& source : Sources()) {
    SCOPED_TRACE(source);
    ASSERT_TRUE(services.ZoomPic(source, Path("out.jpg"), 37, 90, Exif::Keep));
    ExpectAs({{ZoomRequest{source, Path("out.jpg"), {37, 90}, Exif::Keep}}}, "out.jpg");
  }
}

TEST_F(FileWorkTest, EffectsAreThoseOfTheImageOperations) {
  for (const std::string& source : Sources()) {
    for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
      SCOPED_TRACE(source + " " + type);
      Image image = Load(source);
      Image canvas;
      ASSERT_TRUE(services.RotateImage(image, 7, {0x00FF00}));
      ASSERT_TRUE(services.ResampleImage(image, 60, 50));
      ASSERT_TRUE(services.Invert(image));
      ASSERT_TRUE(services.CutImage(image, {5, -2, 50, 40}));
      ASSERT_TRUE(services.NewCanvas({70, 60}, base::kWhite, canvas));
      ASSERT_TRUE(services.DrawImage(canvas, image, {10, 5, 45, 36}));
      services.CopyTags(canvas, image);
      services.SetImageResolution(canvas, 200);
      ASSERT_TRUE(services.SaveByType(canvas, Path("out"), type, {.quality = 91, .exif = Exif::Keep}));
      EffectsRequest request{source, Path("out"), {83, 61}, {}};
      request.steps = {RotateStep{7, {0x00FF00}}, ResampleStep{{60, 50}}, InvertStep{}, CutStep{{5, -2, 50, 40}},
                       PlaceStep{{70, 60}, {10, 5, 45, 36}}};
      request.dpi = 200;
      request.encoder = *EncoderOfType(type);
      request.save = {.quality = 91, .exif = Exif::Keep};
      ExpectAs({{request}}, "out");
    }
    Image grey = Load(source);
    ASSERT_TRUE(services.ConvertImageToGrayMode(grey));
    ASSERT_TRUE(services.Threshold(grey, 100));
    ASSERT_TRUE(services.SaveByType(grey, Path("out"), "tif", {.blackWhite = true}));
    EffectsRequest request{source, Path("out"), {83, 61}, {GreyStep{}, ThresholdStep{100}}};
    request.encoder = Encoder::Tiff;
    request.save.blackWhite = true;
    ExpectAs({{request}}, "out");
  }
}

TEST_F(FileWorkTest, APictureOfAnotherSizeIsRefused) {
  EffectsRequest request{Sources()[0], Path("out"), {83, 60}, {GreyStep{}}};
  Do({{request}});
  EXPECT_FALSE(status_);
}

// Cut, scaled or turned into a work file, and then a border around that.
TEST_F(FileWorkTest, AChainIsWhatItsStepsWriteOneByOne) {
  for (const std::string& source : Sources()) {
    for (const char* extension : {"jpg", "png", "gif", "tif", "bmp"}) {
      SCOPED_TRACE(source + " " + extension);
      const std::string work = Path(std::string("work.") + extension);
      const std::string out = Path(std::string("out.") + extension);
      const ZoomRequest zoom{source, work, {97, 71}};
      EffectsRequest effects{work, Path(std::string("work2.") + extension), {97, 71}, {CutStep{{7, 5, 83, 61}}}};
      effects.encoder = EncoderFor(extension);
      const BorderRequest border = Border(effects.destination, out);
      ASSERT_TRUE(services.ZoomPic(source, work, 97, 71));
      Image image = Load(work);
      ASSERT_TRUE(services.CutImage(image, {7, 5, 83, 61}));
      ASSERT_TRUE(services.SaveByType(image, effects.destination, extension, effects.save));
      ASSERT_TRUE(services.AddBoardToFile(border));
      world.folder.Write(std::string("work.") + extension, "what lies there is not read");
      world.folder.Write(std::string("work2.") + extension, "nor is this");
      ExpectAs({{zoom, effects, border}}, std::string("out.") + extension);
      ASSERT_TRUE(services.ZoomPic(source, work, 97, 71));
      CropRequest crop = Crop(work, {7, 5, 83, 61}, EncoderFor(extension));
      ASSERT_TRUE(services.CropToFile(crop));
      world.folder.Write(std::string("work.") + extension, "not read either");
      ExpectAs({{zoom, crop}}, "out");
    }
  }
}

TEST_F(FileWorkTest, SeveralCutsOfOneSourceAreOutputsOfOneWork) {
  for (const std::string& source : Sources()) {
    for (const Encoder encoder : kEncoders) {
      SCOPED_TRACE(source + " " + std::to_string(static_cast<int>(encoder)));
      FileWork work;
      std::vector<std::string> plain;
      for (int i = 0; i < 3; ++i) {
        CropRequest crop = Crop(source, {i * 9, i, 40, 30}, encoder);
        ASSERT_TRUE(services.CropToFile(crop));
        plain.push_back(world.folder.Read("out"));
        crop.destination += std::to_string(i);
        work.steps.emplace_back(crop);
      }
      const std::vector<std::string> outputs = Do(work);
      ASSERT_TRUE(status_) << status_.Why();
      EXPECT_TRUE(outputs == plain);
    }
  }
}

TEST_F(FileWorkTest, AnyFailureIsThatOfTheWork) {
  const std::string source = Sources()[0];
  const std::string bytes = world.folder.Read("rgb.png");
  const std::string half = world.folder.Write("half.png", bytes.substr(0, bytes.size() / 2));
  const FileWork failing[] = {
      {{Crop(half, {0, 0, 83, 61}, Encoder::Png)}},
      {{Crop(Path("missing.png"), {0, 0, 9, 9}, Encoder::Png)}},
      {{Crop(source, {0, 0, 0, 9}, Encoder::Png)}},
      {{ZoomRequest{source, Path("z.jpg"), {0, 9}}}},
      {{EffectsRequest{half, Path("out"), {83, 61}, {GreyStep{}}}}},
      {{ZoomRequest{source, Path("z.jpg"), {90, 90}}, Border(Path("z.jpg"), "/nowhere/x.png"),
        Crop(source, {0, 0, -1, 1}, Encoder::Bmp)}},
  };
  for (const FileWork& work : failing) {
    Do(work);
    EXPECT_FALSE(status_);
  }
}

TEST_F(FileWorkTest, AStopEndsEveryKindOfWork) {
  std::stop_source stop;
  stop.request_stop();
  for (const std::string& source : Sources()) {
    host::DiskCalls calls;
    for (const FileWork& work :
         {FileWork{{Crop(source, {0, 0, 60, 60}, Encoder::Png)}}, FileWork{{Border(source, Path("out.png"))}},
          FileWork{{EffectsRequest{source, Path("out"), {83, 61}, {GreyStep{}}}}}}) {
      Do(work, {.stop = stop.get_token(), .calls = &calls});
      EXPECT_FALSE(status_) << source;
    }
  }
}

TEST_F(FileWorkTest, ReadsAreCountedInPairs) {
  for (const std::string& source : Sources()) {
    host::DiskCalls calls;
    Do({{Crop(source, {0, 0, 60, 60}, Encoder::Png)}}, {.calls = &calls});
    EXPECT_TRUE(status_);
    EXPECT_GE(calls.Ended(), 2u) << source;
    EXPECT_FALSE(calls.InFlight()) << source;
  }
}

TEST_F(FileWorkTest, WithoutAdmissionNothingIsMade) {
  const std::string source = Sources()[0];
  WorkHooks hooks;
  std::int64_t asked = 0;
  hooks.admit = [&](std::int64_t working, std::int64_t results) {
    asked = working + results;
    return false;
  };
  hooks.output = []() -> host::Draft& { throw std::runtime_error("no output was expected"); };
  const FileWork work{{EffectsRequest{source, Path("out"), {83, 61}, {GreyStep{}}}}};
  EXPECT_EQ(DoWork(work, {world.files, {}}, hooks).GetProblem(), Problem::Stopped);
  EXPECT_GE(asked, 83 * 61 * 4);
}

// Hand-computed: a picture and what is made of it are held together; large results are reserved.
TEST_F(FileWorkTest, MemoryIsEstimatedFromTheSizes) {
  OpenedPicture opened;
  ASSERT_TRUE(OpenPicture(world.files, Sources()[0], {}, {}, opened));
  const auto rows = [](int width) { return std::int64_t{width} * 3 * 64 * 4; };
  EffectsRequest effects{Path("rgb.png"), Path("out"), {83, 61}, {RotateStep{90}, GreyStep{}, CutStep{{0, 0, 10, 10}}}};
  WorkMemory memory = MemoryFor({{effects}}, opened);
  EXPECT_EQ(memory.working, 2 * 83 * 61 * 3 + rows(83));
  EXPECT_EQ(memory.results, 0);
  effects.encoder = Encoder::Png;
  memory = MemoryFor({{effects}}, opened);
  EXPECT_EQ(memory.results, 10 * 10 * 3);
  // What is passed on to the border counts with both, and is no result.
  BorderRequest border = Border(Path("out"), Path("b.jpg"));
  border.image = {10, 10};
  memory = MemoryFor({{effects, border}}, opened);
  EXPECT_EQ(memory.working, 2 * 83 * 61 * 3 + rows(83) + 10 * 10 * 3);
  EXPECT_EQ(memory.results, 0);
}

// A canvas of any size that a request can name asks for more memory than there is, never for less than nothing.
TEST_F(FileWorkTest, MemoryOfTheLargestCanvasDoesNotOverflow) {
  OpenedPicture opened;
  ASSERT_TRUE(OpenPicture(world.files, Sources()[0], {}, {}, opened));
  constexpr int kLargest = std::numeric_limits<int>::max();
  EffectsRequest zoom{Path("rgb.png"), Path("out"), {83, 61}, {ResampleStep{{kLargest, kLargest}}}};
  zoom.encoder = Encoder::Png;
  const WorkMemory memory = MemoryFor({{zoom}}, opened);
  EXPECT_GT(memory.working, std::int64_t{1} << 48);
  EXPECT_GT(memory.results, std::int64_t{1} << 48);
}

// The same works on many threads at once give the same bytes, however the threads meet.
TEST_F(FileWorkTest, WorksSideBySideDoNotDisturbEachOther) {
  std::vector<FileWork> works;
  for (const std::string& source : Sources()) {
    works.push_back({{Crop(source, {3, 3, 70, 50}, Encoder::Png)}});
    EffectsRequest effects{source, Path("w.png"), {83, 61}, {RotateStep{11}, GreyStep{}, CutStep{{4, 4, 83, 61}}}};
    effects.encoder = Encoder::Png;
    works.push_back({{effects, Border(Path("w.png"), Path("out.jpg"))}});
  }
  std::vector<std::vector<std::string>> alone;
  for (const FileWork& work : works) alone.push_back(Do(work));
  const auto run = [&](std::size_t first, std::atomic<int>& same) {
    for (std::size_t i = 0; i < works.size(); ++i) {
      const std::size_t at = (first + i) % works.size();
      std::vector<std::unique_ptr<MemoryDraft>> drafts;
      WorkHooks hooks;
      hooks.admit = [](std::int64_t, std::int64_t) { return true; };
      hooks.output = [&]() -> host::Draft& {
        drafts.push_back(std::make_unique<MemoryDraft>([](std::int64_t) { return Status::Ok(); }));
        return *drafts.back();
      };
      const bool done = static_cast<bool>(DoWork(works[at], {world.files, {}, {.threads = 1}}, hooks));
      if (done && drafts.size() == 1 && drafts[0]->Release() == alone[at][0]) ++same;
    }
  };
  constexpr std::size_t kThreads = 4;
  std::atomic<int> same = 0;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) threads.emplace_back([&, i] { run(i * 5, same); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(same, static_cast<int>(kThreads * works.size()));
}

}  // namespace
}  // namespace quillon::imaging
