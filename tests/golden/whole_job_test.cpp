// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Whole jobs: pictures of five formats listed, cut with a set of options, and compared pixel by pixel with what the
// options mean, computed here on plain arrays.
#include <cmath>
#include <functional>
#include <vector>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

// What a job makes of a picture.
using Meaning = std::function<Picture(const Picture&)>;

struct Job {
  const char* name;
  std::vector<std::pair<const char*, const char*>> settings;  // in the order a user would make them
  bool advanced;
  Meaning meaning;
  bool zoomed = false;  // by way of a jpeg
};

void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }

Picture Part(const Picture& picture, base::Rect rect) {
  return Painted(rect.width, rect.height, [&](int x, int y) {
    const int fromX = x + rect.left;
    const int fromY = y + rect.top;
    const bool inside = fromX >= 0 && fromY >= 0 && fromX < picture.width && fromY < picture.height;
    return inside ? picture.At(fromX, fromY) : kWhitePixel;
  });
}

Picture LeftTurned(const Picture& picture) {
  return Painted(picture.height, picture.width, [&](int x, int y) { return picture.At(picture.width - 1 - y, x); });
}

Picture RightTurned(const Picture& picture) {
  return Painted(picture.height, picture.width, [&](int x, int y) { return picture.At(y, picture.height - 1 - x); });
}

Picture Each(const Picture& picture, const std::function<Pixel(const Pixel&)>& change) {
  return Painted(picture.width, picture.height, [&](int x, int y) { return change(picture.At(x, y)); });
}

Picture Framed(const Picture& picture, int left, int top, int right, int bottom, Pixel colour) {
  return Painted(picture.width + left + right, picture.height + top + bottom, [&](int x, int y) {
    const bool inside = x >= left && y >= top && x < left + picture.width && y < top + picture.height;
    return inside ? picture.At(x - left, y - top) : colour;
  });
}

int Grey(const Pixel& pixel) {
  return static_cast<int>(std::lround(0.299 * pixel.red + 0.587 * pixel.green + 0.114 * pixel.blue));
}

Job ZoomedTurnedCutGreyBordered() {
  return {"ZoomedTurnedCutGreyBordered",
          {{"FBaseOpt.ChZoomAndCut", "1"},
           {"FBaseOpt.CmbZoom", "80,60"},
           {"FBaseOpt.CmbRotate", "1"},
           {"FBaseOpt.ChToGray", "1"},
           {"FBaseOpt.ChAddBoard", "1"},
           {"FBaseOpt.TBoard(1)", "1"},
           {"FBaseOpt.PBoardColor", "#0000FF"},
           {"FBaseOpt.CmbDPI", "254"},
           {"TCutValue(0)", "25"}},
          true,
          [](const Picture& p) {
            const Picture half = Painted(80, 60, [&](int x, int y) { return p.At(2 * x, 2 * y); });
            const Picture cut = Each(Part(LeftTurned(half), {15, 0, 45, 80}), [](const Pixel& q) {
              return Pixel{Grey(q), Grey(q), Grey(q)};
            });
            return Framed(cut, 0, 10, 0, 0, {0, 0, 255});
          },
          true};
}

const std::vector<Job>& Jobs() {
  // The pictures are 160 x 120, cut in percent unless a job says otherwise.
  static const std::vector<Job> jobs{
      {"Whole", {}, false, [](const Picture& p) { return p; }},
      {"Percent",
       {{"TCutValue(0)", "10"}, {"TCutValue(1)", "20"}, {"TCutValue(2)", "30"}, {"TCutValue(3)", "40"}},
       false,
       [](const Picture& p) {
         return Part(p, {16, 24, 96, 48});
       }},
      {"PixelsWithRemainders",
       {{"ChCutA", "1"},
        {"TCutValue(0)", "5"},
        {"TCutValue(1)", "7"},
        {"ChFixCut", "1"},
        {"TFixWH(0)", "55"},
        {"TFixWH(1)", "33"},
        {"TCutValue(0)", "5"},
        {"TCutValue(1)", "7"}},
       false,
       [](const Picture& p) {
         return Part(p, {5, 7, 160 - 5 - 55, 120 - 7 - 33});
       }},
      {"FixedSizeOfTheAdvancedOptions",
       {{"ChCutA", "1"},
        {"TCutValue(0)", "5"},
        {"TCutValue(1)", "7"},
        {"FBaseOpt.TSmalS(2)", "40"},
        {"FBaseOpt.TSmalS(3)", "30"}},
       true,
       [](const Picture& p) {
         return Part(p, {5, 7, 40, 30});
       }},
      {"TurnedLeftThenCut",
       {{"FBaseOpt.CmbRotate", "1"}, {"TCutValue(0)", "10"}, {"TCutValue(3)", "50"}},
       true,
       [](const Picture& p) {
         return Part(LeftTurned(p), {12, 0, 108, 80});
       }},
      {"TurnedRightCutAndTurnedBack",
       {{"FBaseOpt.CmbRotate", "2"}, {"FBaseOpt.ChRecover", "1"}, {"TCutValue(1)", "25"}},
       true,
       [](const Picture& p) {
         return LeftTurned(Part(RightTurned(p), {0, 40, 120, 120}));
       }},
      {"Grey",
       {{"FBaseOpt.ChToGray", "1"}, {"TCutValue(0)", "50"}},
       true,
       [](const Picture& p) {
         return Each(Part(p, {80, 0, 80, 120}), [](const Pixel& q) { return Pixel{Grey(q), Grey(q), Grey(q)}; });
       }},
      {"Inverse",
       {{"FBaseOpt.ChInvert", "1"}, {"TCutValue(1)", "50"}},
       true,
       [](const Picture& p) {
         return Each(Part(p, {0, 60, 160, 60}), [](const Pixel& q) {
           return Pixel{255 - q.red, 255 - q.green, 255 - q.blue};
         });
       }},
      {"Border",
       {{"FBaseOpt.ChAddBoard", "1"},
        {"FBaseOpt.TBoard(0)", "1"},
        {"FBaseOpt.TBoard(1)", "2"},
        {"FBaseOpt.TBoard(2)", "3"},
        {"FBaseOpt.TBoard(3)", "4"},
        {"FBaseOpt.PBoardColor", "#0000FF"},
        {"CmbDPI", "254"},
        {"TCutValue(0)", "50"}},
       true,
       [](const Picture& p) {
         return Framed(Part(p, {80, 0, 80, 120}), 10, 20, 30, 40, {0, 0, 255});
       }},
      {"TurnedCutGreyInverseBordered",
       {{"FBaseOpt.CmbRotate", "1"},
        {"FBaseOpt.ChToGray", "1"},
        {"FBaseOpt.ChInvert", "1"},
        {"FBaseOpt.ChAddBoard", "1"},
        {"FBaseOpt.TBoard(1)", "1"},
        {"FBaseOpt.PBoardColor", "#0000FF"},
        {"FBaseOpt.CmbDPI", "254"},
        {"TCutValue(0)", "25"}},
       true,
       [](const Picture& p) {
         const Picture cut = Each(Part(LeftTurned(p), {30, 0, 90, 160}), [](const Pixel& q) {
           return Pixel{255 - Grey(q), 255 - Grey(q), 255 - Grey(q)};
         });
         return Framed(cut, 0, 10, 0, 0, {0, 0, 255});
       }},
      ZoomedTurnedCutGreyBordered(),
  };
  return jobs;
}

class WholeJobTest : public CutTest, public ::testing::WithParamInterface<Job> {
 protected:
  static constexpr int kWidth = 160;
  static constexpr int kHeight = 120;

  // Smooth enough for a jpeg, of few enough colours for a palette.
  static Picture Original() {
    return Painted(kWidth, kHeight, [](int x, int y) { return Pixel{x / 20 * 30, y / 20 * 40, 90}; });
  }
  // Five files of five formats, at 254 dpi if the format stores a resolution.
  std::vector<std::string> Sources() {
    std::vector<std::string> paths;
    for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
      paths.push_back(Make(std::string("p_") + type + "." + type, Original(), 254));
    }
    return paths;
  }
  void MakeSettings() {
    // A gif stores no resolution, so its millimetres are computed with that of the screen.
    flags.ScreenDpi = 254;
    if (GetParam().advanced) options.Load();
    for (const auto& [name, value] : GetParam().settings) Put(name, value);
  }
  // Of all samples, how many are further off than a jpeg of good quality or a palette may be.
  static double FractionOff(const Picture& a, const Picture& b, int allowed) {
    if (a.width != b.width || a.height != b.height) return 1;
    int off = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
      const Pixel& p = a.pixels[i];
      const Pixel& q = b.pixels[i];
      const int most = std::max({std::abs(p.red - q.red), std::abs(p.green - q.green), std::abs(p.blue - q.blue)});
      if (most > allowed) ++off;
    }
    return static_cast<double>(off) / static_cast<double>(a.pixels.size());
  }
};

TEST_P(WholeJobTest, IntoPng) {
  form.CmbOutType.SetText("png");
  MakeSettings();
  Cut(Sources());
  ASSERT_EQ(Totals().written, 5u) << Whys();
  const Picture wanted = GetParam().meaning(Original());
  for (const char* type : {"png", "bmp", "tif"}) {
    const Picture made = Read(Out(std::string("p_") + type + ".png"));
    if (GetParam().zoomed) {
      EXPECT_LE(FractionOff(made, wanted, 12), 0.06) << type;
    } else {
      EXPECT_EQ(Difference(made, wanted), 0) << type;
    }
  }
  EXPECT_LE(FractionOff(Read(Out("p_gif.png")), wanted, GetParam().zoomed ? 12 : 6), GetParam().zoomed ? 0.06 : 0.01);
  EXPECT_LE(FractionOff(Read(Out("p_jpg.png")), wanted, 12), 0.06);
}

TEST_P(WholeJobTest, IntoJpg) {
  form.TQuality.SetText("95");
  MakeSettings();
  Cut(Sources());
  ASSERT_EQ(Totals().written, 5u) << Whys();
  const Picture wanted = GetParam().meaning(Original());
  for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
    EXPECT_LE(FractionOff(Read(Out(std::string("p_") + type + ".jpg")), wanted, 24), 0.06) << type;
  }
}

TEST_P(WholeJobTest, OverTheSources) {
  Put("ChOver", "1");
  form.TQuality.SetText("95");
  MakeSettings();
  const std::vector<std::string> paths = Sources();
  Cut(paths);
  ASSERT_EQ(Totals().written, 5u) << Whys();
  const Picture wanted = GetParam().meaning(Original());
  for (const std::string& path : paths) EXPECT_LE(FractionOff(Read(path), wanted, 24), 0.06) << path;
  EXPECT_EQ(world.folder.Names("in").size(), 5u);
  EXPECT_TRUE(OutNames().empty());
}

INSTANTIATE_TEST_SUITE_P(Jobs, WholeJobTest, ::testing::ValuesIn(Jobs()),
                         [](const auto& job) { return std::string(job.param.name); });

}  // namespace
}  // namespace quillon::job
