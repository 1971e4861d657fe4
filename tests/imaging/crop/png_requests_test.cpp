// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/png_requests.h"

#include <cstdlib>
#include <map>

#include "base/rect.h"
#include "host/testing/test_host.h"
#include "imaging/crop/work_memory.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"
#include "imaging/png_maker.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using vips::VImage;

class PngRequests : public ServicesTest {
 protected:
  void SetUp() override {
    rgba = PhotoLike(40, 30, 4);
    ToVips(rgba).pngsave(Path("rgba.png").c_str());
    ToVips(PhotoLike(40, 30, 3)).pngsave(Path("rgb.png").c_str());
  }
  PngCutRequest Cut(const std::string& source, PngDrawing drawing, const std::string& out = "out.png") const {
    return {.source = Path(source), .destination = Path(out), .drawing = std::move(drawing)};
  }
  PngOverBmpRequest OverBmp(int bits, const std::string& out, const std::string& source = "rgb.png") const {
    return {.source = Path(source), .destination = Path(out), .drawing = {.rect = {5, 4, 30, 20}}, .bits = bits};
  }
  Sheet CutToSheet(const PngCutRequest& request) {
    const Status cut = services.PngCut(request);
    EXPECT_TRUE(cut) << cut.Why();
    return cut ? ReadPlainly(request.destination) : Sheet{};
  }

  Sheet rgba;
};

TEST_F(PngRequests, TheFinalNameSelectsTheEncoder) {
  const auto encoder = [](const std::string& destination, const std::string& finalName = {}) {
    return EncoderOf(PngCutRequest{.source = "/a.png", .destination = destination, .finalName = finalName});
  };
  EXPECT_EQ(encoder("/out/a.png"), Encoder::Png);
  EXPECT_EQ(encoder("/out/a.gif"), Encoder::Gif);
  EXPECT_EQ(encoder("/out/a.GIF"), Encoder::Gif);
  EXPECT_EQ(encoder("/out/a.gif.png"), Encoder::Png);
  EXPECT_EQ(encoder("/out.gif/a"), Encoder::Png);
  EXPECT_EQ(encoder("/app/Tmp.gif", "/a.png"), Encoder::Png);
  EXPECT_EQ(encoder("/app/Tmp.png", "/a.gif"), Encoder::Gif);
  const auto drawn = [](const std::string& name) { return EncoderOf(PngOverBmpRequest{"/a.png", name, {}, 24}); };
  EXPECT_EQ(drawn("a.jpg"), Encoder::Jpeg);
  EXPECT_EQ(drawn("a.bmp"), Encoder::Bmp);
  EXPECT_EQ(drawn("a.bmp.png"), Encoder::Png);
  EXPECT_EQ(drawn("a"), Encoder::Png);
}

TEST_F(PngRequests, AWorkFileOfAPngIsAPng) {
  PngCutRequest request = Cut("rgba.png", {.rect = {0, 0, 20, 20}}, "app/Tmp.gif");
  request.finalName = Path("rgba.png");
  ASSERT_TRUE(services.PngCut(request));
  EXPECT_EQ(world.folder.Read("app/Tmp.gif").substr(1, 3), "PNG");
}

TEST_F(PngRequests, AGifKeepsWhatIsTransparent) {
  ASSERT_TRUE(services.PngCut(Cut("rgb.png", {.rect = {-10, 0, 30, 30}}, "out.gif")));
  EXPECT_EQ(world.folder.Read("out.gif").substr(0, 4), "GIF8");
  const Sheet out = ReadPlainly(Path("out.gif"));
  ASSERT_EQ(out.bands, 4);
  EXPECT_EQ(out.At(3, 10, 3), 0);
  EXPECT_EQ(out.At(20, 10, 3), 255);
}

TEST_F(PngRequests, OtherSourcesAreCutAsWell) {
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({61, 43}, Colours::YCbCr), {}));
  ToVips(PhotoLike(61, 43, 1), VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
  ToVips(PhotoLike(61, 43, 4), VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
  ToVips(PhotoLike(61, 43, 3)).gifsave(Path("a.gif").c_str());
  for (const char* name : {"a.jpg", "grey.tif", "ink.tif", "a.gif"}) {
    SCOPED_TRACE(name);
    for (const base::Rect& rect : {base::Rect{10, 5, 30, 20}, base::Rect{-5, -5, 80, 60}, base::Rect{100, 0, 7, 7}}) {
      const Sheet out = CutToSheet(Cut(name, {.rect = rect}));
      ASSERT_EQ(out.bands, 4);
      EXPECT_EQ(out.width, rect.width);
      for (int y = 0; y < out.height; ++y) {
        for (int x = 0; x < out.width; ++x) {
          const int sx = x + rect.left;
          const int sy = y + rect.top;
          const bool inside = sx >= 0 && sy >= 0 && sx < 61 && sy < 43;
          ASSERT_EQ(out.At(x, y, 3), inside ? 255 : 0) << x << " " << y;
          ASSERT_TRUE(inside || out.At(x, y, 0) == 0);
        }
      }
    }
  }
  const Sheet grey = ReadPlainly(Path("grey.tif"));
  const Sheet out = CutToSheet(Cut("grey.tif", {.rect = {10, 5, 30, 20}}));
  EXPECT_EQ(out.At(4, 6, 1), grey.At(14, 11));
}

TEST_F(PngRequests, ZoomScalesTheWholeSource) {
  const Sheet out = CutToSheet(Cut("rgba.png", {.mode = PngMode::Zoom, .size = {80, 15}}));
  EXPECT_EQ(out.width, 80);
  EXPECT_EQ(out.height, 15);
  EXPECT_EQ(out.bands, 4);
  const Sheet same = CutToSheet(Cut("rgba.png", {.mode = PngMode::Zoom, .size = {40, 30}}));
  EXPECT_EQ(Difference(same, rgba), 0);
  ToVips(Plain(10, 10, {200, 100, 50})).pngsave(Path("plain.png").c_str());
  EXPECT_EQ(CutToSheet(Cut("plain.png", {.mode = PngMode::Zoom, .size = {7, 23}})), Plain(7, 23, {200, 100, 50, 255}));
}

TEST_F(PngRequests, RotationIsCounterClockwiseAndTheCanvasGrows) {
  const Sheet turned = CutToSheet(Cut("rgba.png", {.mode = PngMode::Rotate, .angle = 90}));
  ASSERT_EQ(turned.width, 30);
  ASSERT_EQ(turned.height, 40);
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 40; ++x) ASSERT_EQ(turned.Pixel(y, 39 - x), rgba.Pixel(x, y));
  }
  ToVips(Plain(40, 30, {200, 100, 50})).pngsave(Path("plain.png").c_str());
  for (const double angle : {30.0, -30.0, 179.5}) {
    const base::Size canvas = base::TurnedSize({40, 30}, angle);
    const Sheet out = CutToSheet(Cut("plain.png", {.mode = PngMode::Rotate, .angle = angle}));
    ASSERT_EQ(out.width, canvas.width);
    ASSERT_EQ(out.height, canvas.height);
    EXPECT_EQ(out.At(0, 0, 3), angle == 179.5 ? out.At(0, 0, 3) : 0);
    EXPECT_EQ(out.Pixel(canvas.width / 2, canvas.height / 2), (std::vector<int>{200, 100, 50, 255}));
  }
  // The upper right corner of the picture moves up when it turns counter-clockwise.
  Sheet marked = Plain(40, 30, {0, 0, 0});
  for (int y = 0; y < 6; ++y) {
    for (int x = 34; x < 40; ++x) marked.values[static_cast<std::size_t>((y * 40 + x) * 3)] = 255;
  }
  ToVips(marked).pngsave(Path("marked.png").c_str());
  const Sheet out = CutToSheet(Cut("marked.png", {.mode = PngMode::Rotate, .angle = 30}));
  int redAbove = 0;
  for (int x = 0; x < out.width; ++x) redAbove += out.At(x, 6, 0) > 128 ? 1 : 0;
  EXPECT_GT(redAbove, 2);
}

TEST_F(PngRequests, ARotatedPictureHasNoOrientationLeft) {
  const std::string oriented = WithChunks(MakePng({}), "IDAT", PngChunkOf("eXIf", ExifWithThumbnail(6)));
  world.folder.Write("oriented.png", oriented);
  ASSERT_TRUE(services.PngCut(Cut("oriented.png", {.mode = PngMode::Rotate, .angle = 20})));
  EXPECT_EQ(vips_image_get_orientation(LoadPlainly(Path("out.png")).get_image()), 1);
  ASSERT_TRUE(services.PngCut(Cut("oriented.png", {.mode = PngMode::Zoom, .size = {9, 9}})));
  EXPECT_EQ(vips_image_get_orientation(LoadPlainly(Path("out.png")).get_image()), 6);
}

TEST_F(PngRequests, OverlaysAreDrawnUnscaledInTheirOrder) {
  ToVips(Plain(40, 30, {10, 20, 30})).pngsave(Path("below.png").c_str());
  ToVips(Plain(10, 10, {255, 0, 0, 255})).pngsave(Path("red.png").c_str());
  ToVips(Plain(10, 10, {0, 0, 255, 0})).pngsave(Path("clear.png").c_str());
  PngDrawing drawing{.mode = PngMode::Overlay, .size = {40, 30}};
  drawing.overlays = {{Path("red.png"), 5, 6, {4, 20}}, {Path("clear.png"), 0, 0, {40, 30}}};
  const Sheet out = CutToSheet(Cut("below.png", drawing));
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 40; ++x) {
      const bool red = x >= 5 && x < 9 && y >= 6 && y < 16;
      ASSERT_EQ(out.Pixel(x, y), red ? (std::vector<int>{255, 0, 0, 255}) : (std::vector<int>{10, 20, 30, 255}));
    }
  }
  drawing.overlays[0].picture = Path("missing.png");
  EXPECT_EQ(services.PngCut(Cut("below.png", drawing)).GetProblem(), Problem::Missing);
}

TEST_F(PngRequests, BmpsOfEveryDepthAreReadBack) {
  const Sheet photo = Part(ReadPlainly(Path("rgb.png")), {5, 4, 30, 20});
  const std::map<int, int> tolerances = {{4, 200}, {8, 90}, {16, 4}, {24, 0}, {32, 0}, {48, 0}, {64, 0}};
  for (const auto& [bits, tolerance] : tolerances) {
    SCOPED_TRACE(bits);
    const Status drawn = services.PngOverBmp(OverBmp(bits, "out.bmp"));
    ASSERT_TRUE(drawn) << drawn.Why();
    EXPECT_EQ(static_cast<unsigned char>(world.folder.Read("out.bmp")[28]), bits);
    Sheet back = PixelsOf(Load(Path("out.bmp")));
    if (bits == 64) {
      ASSERT_EQ(back.bands, 4);
      Sheet opaque = photo;
      opaque.bands = 4;
      opaque.values.clear();
      for (int i = 0; i < 30 * 20; ++i) {
        for (int b = 0; b < 3; ++b) opaque.values.push_back(photo.values[static_cast<std::size_t>(i * 3 + b)]);
        opaque.values.push_back(255);
      }
      EXPECT_EQ(Difference(back, opaque), 0);
    } else {
      EXPECT_LE(Difference(back, photo), tolerance);
    }
  }
}

TEST_F(PngRequests, IndexedDepthsHaveFewColours) {
  for (const auto& [bits, most] : {std::pair(4, 16U), {8, 256U}}) {
    for (const char* out : {"out.bmp", "out.png"}) {
      PngOverBmpRequest request = OverBmp(bits, out);
      request.drawing = {.mode = PngMode::Zoom, .size = {90, 80}};
      ASSERT_TRUE(services.PngOverBmp(request));
      const Sheet back = PixelsOf(Load(Path(out)));
      std::map<std::vector<int>, int> colours;
      for (int y = 0; y < back.height; ++y) {
        for (int x = 0; x < back.width; ++x) ++colours[back.Pixel(x, y)];
      }
      EXPECT_LE(colours.size(), most) << out;
      EXPECT_GT(colours.size(), 4U) << out;
    }
    EXPECT_EQ(world.folder.Read("out.png")[25], 3);  // colour type: palette
  }
  // A picture of few colours keeps them.
  ToVips(Plain(20, 20, {200, 100, 50})).pngsave(Path("plain.png").c_str());
  PngOverBmpRequest plain = OverBmp(4, "out.bmp", "plain.png");
  plain.drawing.rect = {0, 0, 13, 7};
  ASSERT_TRUE(services.PngOverBmp(plain));
  EXPECT_LE(Difference(PixelsOf(Load(Path("out.bmp"))), Plain(13, 7, {200, 100, 50})), 1);
}

TEST_F(PngRequests, AlphaBecomesWhiteExceptWith64Bits) {
  ToVips(Plain(20, 20, {0, 0, 0, 0})).pngsave(Path("clear.png").c_str());
  for (const int bits : {4, 8, 16, 24, 32, 48}) {
    ASSERT_TRUE(services.PngOverBmp(OverBmp(bits, "out.bmp", "clear.png"))) << bits;
    EXPECT_EQ(PixelsOf(Load(Path("out.bmp"))), Plain(30, 20, {255, 255, 255})) << bits;
  }
  ASSERT_TRUE(services.PngOverBmp(OverBmp(64, "out.bmp", "clear.png")));
  EXPECT_EQ(PixelsOf(Load(Path("out.bmp"))), Plain(30, 20, {0, 0, 0, 0}));
}

TEST_F(PngRequests, DeepSourcesKeepTheirDepth) {
  ToVipsDeep(PhotoLike(40, 30, 3, 65535)).pngsave(Path("deep.png").c_str());
  ASSERT_TRUE(services.PngOverBmp(OverBmp(48, "out.png", "deep.png")));
  const Sheet out = ReadPlainly(Path("out.png"));
  EXPECT_EQ(out, Part(ReadPlainly(Path("deep.png")), {5, 4, 30, 20}));
  ASSERT_TRUE(services.PngOverBmp(OverBmp(64, "out.png", "rgba.png")));
  EXPECT_EQ(ReadPlainly(Path("out.png")).At(3, 3, 3), 257 * rgba.At(8, 7, 3));
}

TEST_F(PngRequests, JpegsAndOtherDepths) {
  ASSERT_TRUE(services.PngOverBmp(OverBmp(24, "out.jpg")));
  EXPECT_LE(Difference(ReadPlainly(Path("out.jpg")), Part(ReadPlainly(Path("rgb.png")), {5, 4, 30, 20})), 40);
  for (const int bits : {0, 1, 2, 15, 33, 128, -8}) {
    const Status drawn = services.PngOverBmp(OverBmp(bits, "no.bmp"));
    EXPECT_EQ(drawn.GetProblem(), Problem::Unsupported) << bits;
    EXPECT_FALSE(drawn.Why().empty());
  }
  EXPECT_FALSE(world.folder.Exists("no.bmp"));
}

TEST_F(PngRequests, SizesThatAreRefused) {
  EXPECT_EQ(services.PngCut(Cut("rgb.png", {.mode = PngMode::Zoom, .size = {0, 5}})).GetProblem(), Problem::Other);
  EXPECT_EQ(services.PngCut(Cut("rgb.png", {.mode = PngMode::Zoom, .size = {500001, 5}})).GetProblem(),
            Problem::TooLarge);
  EXPECT_EQ(services.PngCut(Cut("rgb.png", {.mode = PngMode::Overlay})).GetProblem(), Problem::Other);
  EXPECT_FALSE(world.folder.Exists("out.png"));
}

// What is prefetched is what the operation writes.
TEST_F(PngRequests, PrefetchedResultsHaveTheSameBytes) {
  std::vector<FileRequest> requests = {
      Cut("rgba.png", {.rect = {-3, 4, 30, 20}}),
      Cut("rgba.png", {.rect = {-3, 4, 30, 20}}, "out.gif"),
      Cut("rgb.png", {.mode = PngMode::Rotate, .angle = 15}),
      OverBmp(8, "out.bmp"),
  };
  for (const FileRequest& request : requests) {
    const auto perform = [&] {
      const auto* cut = std::get_if<PngCutRequest>(&request);
      return cut ? services.PngCut(*cut) : services.PngOverBmp(std::get<PngOverBmpRequest>(request));
    };
    const std::string name = DestinationOf(request);
    ASSERT_TRUE(perform());
    const std::string direct = world.folder.Read(std::filesystem::path(name).filename().native());
    std::filesystem::remove(name);
    services.PlanWork({FileWork{{request}}});
    std::optional<Services::PrefetchedFiles> ready;
    ASSERT_TRUE(services.PopPrefetched({{request}}, ready));
    ASSERT_TRUE(ready) << name;
    EXPECT_TRUE(ready->front() == direct) << name;
    services.PlanWork({FileWork{{request}}});
    ASSERT_TRUE(perform());
    EXPECT_TRUE(world.folder.Read(std::filesystem::path(name).filename().native()) == direct) << name;
    std::filesystem::remove(name);
  }
}

TEST_F(PngRequests, MemoryOfAPlainCutIsThatOfRows) {
  ToVips(PhotoLike(400, 300, 3)).pngsave(Path("large.png").c_str());
  const auto working = [&](const PngDrawing& drawing) {
    OpenedPicture opened;
    EXPECT_TRUE(OpenPicture(world.files, Path("large.png"), {}, {}, opened));
    return MemoryFor({{Cut("large.png", drawing)}}, opened).working;
  };
  const std::int64_t rotated = working({.mode = PngMode::Rotate, .angle = 20});
  EXPECT_GE(rotated, 400 * 300 * 4);
  EXPECT_EQ(working({.rect = {0, 0, 400, 300}}), 400 * 3 * 64 * 4);
}

TEST_F(PngRequests, DamagedSourcesAreReportedInEveryMode) {
  const std::string whole = world.folder.Read("rgba.png");
  world.folder.Write("cut.png", whole.substr(0, whole.size() * 2 / 3));
  for (const PngMode mode : {PngMode::Cut, PngMode::Zoom, PngMode::Overlay, PngMode::Rotate}) {
    const PngDrawing drawing{.mode = mode, .rect = {0, 0, 5, 5}, .size = {5, 5}, .angle = 7};
    EXPECT_EQ(services.PngCut(Cut("cut.png", drawing)).GetProblem(), Problem::Damaged) << static_cast<int>(mode);
    PngOverBmpRequest request = OverBmp(24, "out.bmp", "cut.png");
    request.drawing = drawing;
    EXPECT_EQ(services.PngOverBmp(request).GetProblem(), Problem::Damaged) << static_cast<int>(mode);
  }
  EXPECT_FALSE(world.folder.Exists("out.png"));
  EXPECT_FALSE(world.folder.Exists("out.bmp"));
}

}  // namespace
}  // namespace quillon::imaging
