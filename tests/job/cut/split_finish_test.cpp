// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What follows the cut is done to each piece of a picture that is split, once.
#include <filesystem>

#include "base/path_text.h"
#include "job/marking_tools.h"
#include "job/psd_bytes.h"

namespace quillon::job {
namespace {

using Names = std::vector<std::string>;

constexpr int kWidth = 94;
constexpr int kHeight = 63;
constexpr int kColumns = 3;
constexpr int kRows = 2;
constexpr base::Size kPieces[] = {{31, 31}, {31, 31}, {32, 31}, {31, 32}, {31, 32}, {32, 32}};
constexpr Pixel kPsdPixel{10, 200, 30};

// One colour for each piece.
Pixel PieceColour(int number) { return {30 + 40 * number, 230 - 40 * number, 120}; }

Picture Patches() {
  return Painted(kWidth, kHeight,
                 [](int x, int y) { return PieceColour(y * kRows / kHeight * kColumns + x * kColumns / kWidth); });
}

// Places the frame by its answer and shows the picture that it was given.
class AnsweringFrame final : public ManualFrame {
 public:
  explicit AnsweringFrame(Program& owner) : program_(owner) {}
  std::string Ask(const ManualPicture& picture, const std::string&) override {
    asked.push_back(picture.source);
    program_.flags.CurrentImagePath = picture.source;
    program_.flags.ManualStepDone = true;
    if (answer) answer();
    return "decided";
  }
  void Shown() override {}
  host::Status ClonePicture(imaging::Image& out) override {
    return program_.images.LoadImageFromFile(program_.flags.CurrentImagePath, out);
  }
  void Rest() override {}

  std::vector<std::string> asked;
  std::function<void()> answer;

 private:
  Program& program_;
};

class SplitFinishTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    program.outputTools = &tools;
    program.manualFrame = &frame;
    LayOutProfiles(program);
    Option("ChSplit", "1");
    Option("TSmalS(4)", std::to_string(kColumns));
    Option("TSmalS(5)", std::to_string(kRows));
  }
  void CmykAndExif() {
    Option("ChToCMYK", "1");
    Option("ChKeepExif", "1");
  }
  std::string Source(const std::string& name) {
    if (name.ends_with(".psd")) return world.folder.Write("in/" + name, PsdBytes(kWidth, kHeight, kPsdPixel));
    return Make(name, Patches());
  }
  static Names PieceNames(const std::string& name, const std::string& extension) {
    Names names;
    for (int number = 1; number <= kColumns * kRows; ++number) {
      names.push_back(base::JoinPath("", name + "_0" + std::to_string(number), extension));
    }
    return names;
  }
  // The picture in a file of any name.
  Picture PictureIn(const std::string& file, const std::string& extension) {
    const std::string copy = world.folder.Path("seen/" + std::to_string(++seen_) + "." + extension);
    std::filesystem::create_directories(world.folder.Path("seen"));
    std::filesystem::copy_file(file, copy);
    return Read(copy);
  }

  MarkingTools tools;
  AnsweringFrame frame{program};

 private:
  int seen_ = 0;
};

// --- Each type of source and output, with and without a border of 10 pixels at the left.

struct Way {
  const char* source;
  const char* type;
  int border;
};

void PrintTo(const Way& way, std::ostream* out) { *out << way.source << " to " << way.type; }

class SplitWayTest : public SplitFinishTest, public ::testing::WithParamInterface<Way> {
 protected:
  static bool ToPdf() { return std::string(GetParam().type) == "pdf"; }
  // A pdf is made of a jpg.
  static std::string PictureType() { return ToPdf() ? "jpg" : GetParam().type; }
  void ExpectPiece(const std::string& name, std::size_t index) {
    const Picture piece = PictureIn(Out(name), PictureType());
    const int border = GetParam().border;
    const base::Size cut = kPieces[index];
    EXPECT_EQ((base::Size{piece.width, piece.height}), (base::Size{cut.width + border, cut.height})) << name;
    const bool psd = std::string(GetParam().source).ends_with(".psd");
    const Pixel own = psd ? kPsdPixel : PieceColour(static_cast<int>(index));
    // Of a jpg, whose blocks of eight pixels hold some of both.
    const auto expectColour = [&](int x, const Pixel& colour) {
      const Pixel seen = piece.At(x, cut.height / 2);
      EXPECT_LE(Difference({1, 1, {seen}}, {1, 1, {colour}}), 24) << name << " at " << x;
    };
    expectColour(border + cut.width / 2, own);
    if (border > 0) expectColour(2, {0, 0, 255});
  }
};

TEST_P(SplitWayTest, EachPieceIsFinishedOnce) {
  if (GetParam().border > 0) {
    // Millimetres of a picture without a resolution are converted with that of the screen.
    flags.ScreenDpi = 254;
    Option("CmbDPI", "254");
    Option("ChAddBoard", "1");
    Option("TBoard(0)", "1");
    Option("PBoardColor", "#0000FF");
  }
  CmykAndExif();
  form.CmbOutType.SetText(GetParam().type);
  const std::string path = Source(GetParam().source);
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Names names = PieceNames("a", GetParam().type);
  EXPECT_EQ(OutNames(), names);
  EXPECT_EQ(recorder.done[0].more.size(), names.size() - 1);
  const std::string marks = MarkingTools::Marks(path) + (ToPdf() ? "[pdf]" : "");
  for (std::size_t i = 0; i < names.size(); ++i) {
    ExpectPiece(names[i], i);
    const std::string bytes = world.folder.Read("out/" + names[i]);
    EXPECT_TRUE(bytes.ends_with(marks)) << names[i];
    for (const char* mark : {"[cmyk]", "[exif ", "[pdf]"}) {
      EXPECT_EQ(CountOf(bytes, mark), CountOf(marks, mark)) << names[i] << ": " << mark;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, SplitWayTest,
                         ::testing::Values(Way{"a.jpg", "jpg", 0}, Way{"a.png", "tif", 10}, Way{"a.gif", "jpg", 0},
                                           Way{"a.gif", "tif", 10}, Way{"a.psd", "jpg", 0}, Way{"a.psd", "jpg", 10},
                                           Way{"a.jpg", "pdf", 10}, Way{"a.gif", "pdf", 0}, Way{"a.psd", "pdf", 10}),
                         [](const auto& way) {
                           return std::string(way.param.source).substr(2) + "To" + way.param.type +
                                  (way.param.border > 0 ? "Bordered" : "");
                         });

// --- What the pieces share.

TEST_F(SplitFinishTest, OverASourceThatStaysItsExifComesFromACopy) {
  CmykAndExif();
  Put("ChOver", "1");
  const std::string path = Source("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  Names names = PieceNames("a", "jpg");
  for (const std::string& name : names) {
    EXPECT_TRUE(world.folder.Read("in/" + name).ends_with(MarkingTools::Marks(program.AppPath("tmp.jpg")))) << name;
  }
  EXPECT_EQ(world.folder.Read("app/tmp.jpg"), before);
  names.insert(names.begin(), "a.jpg");
  EXPECT_EQ(world.folder.Names("in"), names);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
}

TEST_F(SplitFinishTest, PdfsOverASourceLeaveIt) {
  Put("ChOver", "1");
  const std::string path = Source("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  form.CmbOutType.SetText("pdf");
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  Names names = PieceNames("a", "pdf");
  names.insert(names.begin(), "a.jpg");
  EXPECT_EQ(world.folder.Names("in"), names);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_EQ(tools.pdfs, kColumns * kRows);
}

TEST_F(SplitFinishTest, APdfThatFailsRemovesTheOthersToo) {
  tools.failingPdf = 4;
  form.CmbOutType.SetText("pdf");
  Cut({Source("a.png"), Source("b.png")});
  EXPECT_EQ(OutNames(), PieceNames("b", "pdf"));
  EXPECT_EQ(Why(1), "pdf 没有生成");
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(SplitFinishTest, WhatThePiecesLackIsReportedOnce) {
  CmykAndExif();
  tools.cmykStatus = {host::Problem::Other, "没有配置文件"};
  tools.exifStatus = {host::Problem::Unsupported, "名字不行"};
  Cut({Source("a.jpg")});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(OutNames(), PieceNames("a", "jpg"));
  EXPECT_EQ(Why(1), "颜色没有转换：没有配置文件；Exif没有保留：名字不行");
}

TEST_F(SplitFinishTest, TheFrameIsPlacedOnceForAllPieces) {
  CmykAndExif();
  Option("ChMamal", "1");
  // The left half of the first, and the whole second.
  frame.answer = [&] { form.TCutValue[2].SetNumber(frame.asked.size() == 1 ? 50 : 0); };
  const Names paths{Source("a.jpg"), Source("b.jpg")};
  Cut(paths);
  ASSERT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(frame.asked, paths);
  for (const std::string& path : paths) {
    const bool half = path == paths[0];
    const Names names = PieceNames(half ? "a" : "b", "jpg");
    for (std::size_t i = 0; i < names.size(); ++i) {
      // 47 columns are parted into 15, 16 and 16.
      const int width = !half ? kPieces[i].width : i % kColumns == 0 ? 15 : 16;
      EXPECT_EQ(SizeOf(Out(names[i])), (base::Size{width, kPieces[i].height})) << names[i];
      EXPECT_TRUE(world.folder.Read("out/" + names[i]).ends_with(MarkingTools::Marks(path))) << names[i];
    }
  }
}

TEST_F(SplitFinishTest, APictureThatTheFrameTurnedIsSplitAsItIsShown) {
  Option("ChMamal", "1");
  const std::string turned = Make("shown.png", Painted(kHeight, kWidth, Slope));
  frame.answer = [&] {
    flags.CurrentImagePath = turned;
    flags.ManualRotated = true;
    flags.ManualAngle = 90;
  };
  form.CmbOutType.SetText("png");
  Cut({Source("a.png")});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(OutNames(), PieceNames("a", "png"));
  const Picture last = Read(Out("a_06.png"));
  EXPECT_EQ(Difference(last, Painted(21, 47, [](int x, int y) { return Slope(x + 42, y + 47); })), 0);
}

}  // namespace
}  // namespace quillon::job
