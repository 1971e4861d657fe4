// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QLabel>
#include <QPainter>
#include <QSemaphore>
#include <QSignalSpy>

#include "ui/preview/frame_painter.h"
#include "ui/preview/preview_canvas.h"
#include "ui/preview/preview_loader.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

// --- Positions of picture and frame

class CanvasTest : public ::testing::Test {
 protected:
  CanvasTest() {
    canvas_.resize(216, 116);  // 200 x 100 within the margins of 8
    preview_.ShowPicture("/in/a.jpg", {400, 400});
  }
  void Show() { canvas_.SetPicture(QImage(50, 50, QImage::Format_RGB32)); }

  job::Preview preview_;
  PreviewCanvas canvas_{preview_};
};

TEST_F(CanvasTest, FitsThePictureAndCentresIt) {
  Show();
  EXPECT_EQ(canvas_.PictureRect(), QRectF(58, 8, 100, 100));
}

TEST_F(CanvasTest, ShowsNothingWithoutAPicture) {
  EXPECT_TRUE(canvas_.PictureRect().isEmpty());
  EXPECT_TRUE(canvas_.FrameRect().isEmpty());
  EXPECT_FALSE(canvas_.grab().isNull());
}

TEST_F(CanvasTest, PlacesTheFrameWhateverTheRecordsScale) {
  Show();
  for (const double scale : {1.0, 0.25, 2.0}) {
    preview_.SetScale(scale);
    preview_.SetPictureFrame({40, 80, 200, 100});
    EXPECT_EQ(canvas_.FrameRect(), QRectF(58 + 10, 8 + 20, 50, 25)) << scale;
    EXPECT_EQ(canvas_.FrameText(), QStringLiteral("200 × 100 px")) << scale;
  }
}

TEST_F(CanvasTest, DimsWhatIsCutOff) {
  QImage white(50, 50, QImage::Format_RGB32);
  white.fill(Qt::white);
  canvas_.SetPicture(white);
  preview_.SetPictureFrame({200, 0, 200, 400});
  const QImage shot = canvas_.grab().toImage();
  EXPECT_LT(shot.pixelColor(58 + 20, 60).lightness(), 200);
  EXPECT_EQ(shot.pixelColor(58 + 75, 30), QColor(Qt::white));
}

TEST_F(CanvasTest, TurnsThePictureCounterClockwiseOnWhite) {
  QImage halves(40, 40, QImage::Format_RGB32);
  halves.fill(Qt::red);
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 40; ++x) halves.setPixelColor(x, y, Qt::blue);
  }
  canvas_.SetPicture(halves);
  preview_.SetPictureFrame({0, 0, 400, 400});
  preview_.Reshape({400, 400}, 90);
  const QImage quarter = canvas_.grab().toImage();
  EXPECT_EQ(quarter.pixelColor(58 + 20, 58), QColor(Qt::blue));  // the top is on the left now
  EXPECT_EQ(quarter.pixelColor(58 + 80, 58), QColor(Qt::red));
  preview_.Reshape({400, 400}, 45);
  preview_.SetPictureFrame({0, 0, 566, 566});
  EXPECT_EQ(canvas_.PictureRect(), QRectF(58, 8, 100, 100));
  const QImage eighth = canvas_.grab().toImage();
  EXPECT_EQ(eighth.pixelColor(58 + 5, 8 + 90), QColor(Qt::white));  // below left of the turned square
  EXPECT_EQ(eighth.pixelColor(58 + 20, 50), QColor(Qt::blue));
  EXPECT_EQ(eighth.pixelColor(58 + 80, 60), QColor(Qt::red));
}

TEST_F(CanvasTest, TheBorderHasRoomAndColour) {
  QImage white(50, 50, QImage::Format_RGB32);
  white.fill(Qt::white);
  canvas_.SetPicture(white);
  preview_.SetPictureFrame({0, 0, 400, 400});
  preview_.SetBoard({400, 200, 0, 200, base::Colour{0x0000FF}});
  // 800 x 800 pixels with the border, an eighth of them shown.
  EXPECT_EQ(canvas_.PictureRect(), QRectF(58 + 50, 8 + 25, 50, 50));
  const QImage shot = canvas_.grab().toImage();
  EXPECT_EQ(shot.pixelColor(58 + 25, 58), QColor(Qt::red));
  EXPECT_EQ(shot.pixelColor(58 + 75, 8 + 12), QColor(Qt::red));
  EXPECT_EQ(shot.pixelColor(58 + 75, 8 + 90), QColor(Qt::red));
}

TEST_F(CanvasTest, AnEndlessBorderLeavesThePictureToBeSeen) {
  Show();
  preview_.SetPictureFrame({0, 0, 400, 400});
  preview_.SetBoard({1e15, 1e15, 1e15, 1e15});
  EXPECT_GT(canvas_.PictureRect().width(), 10);
  EXPECT_FALSE(canvas_.grab().isNull());
}

TEST(FrameOutline, FollowsTheShape) {
  const QRectF frame(10, 10, 100, 50);
  const QPointF corner(11, 11);
  const QPointF centre(60, 35);
  for (int shape = 0; shape < 6; ++shape) {
    const QPainterPath path = FrameOutline(frame, shape);
    EXPECT_EQ(path.boundingRect(), frame) << shape;
    EXPECT_TRUE(path.contains(centre)) << shape;
    EXPECT_EQ(path.contains(corner), shape < 2) << shape;
  }
  EXPECT_FALSE(FrameOutline(frame, 2).contains(QPointF(20, 15)));
  EXPECT_TRUE(FrameOutline(frame, 4).contains(QPointF(20, 15)));
}

// --- Loading in the background

TEST(PreviewLoader, DeliversTheLastOneRequested) {
  QSemaphore go;
  std::vector<std::string> read;
  PreviewLoader loader([&](const std::string& path, QSize) {
    go.acquire();
    read.push_back(path);
    return QImage(static_cast<int>(path.size()), 1, QImage::Format_RGB32);
  });
  std::vector<int> taken;
  loader.SetReceiver([&](const QImage& picture) { taken.push_back(picture.width()); });
  loader.Load("/a", QSize(10, 10));
  loader.Load("/bb", QSize(10, 10));
  loader.Load("/ccc", QSize(10, 10));
  go.release(3);
  loader.Wait();
  UiWorld::Turn();
  EXPECT_EQ(taken, std::vector<int>{4});
  EXPECT_EQ(read.back(), "/ccc");
  EXPECT_EQ(std::count(read.begin(), read.end(), "/bb"), 0);
}

TEST(PreviewLoader, MayGoWhileItReads) {
  bool taken = false;
  QSemaphore begun;
  {
    PreviewLoader loader([&](const std::string&, QSize) {
      begun.release();
      return QImage(1, 1, QImage::Format_RGB32);
    });
    loader.SetReceiver([&](const QImage&) { taken = true; });
    loader.Load("/a", QSize(10, 10));
    begun.acquire();
  }
  UiWorld::Turn();
  EXPECT_FALSE(taken);
}

// --- The window

class PreviewWindow : public ::testing::Test {
 protected:
  PreviewWindow() {
    imaging::Image image;
    EXPECT_TRUE(ui_.program.images.NewCanvas({40, 20}, base::Colour{0x0000FF}, image));
    EXPECT_TRUE(ui_.program.images.SaveImageToPngFile(image, picture_));
    ui_.program.fCutPre.Show();
  }
  PreviewCanvas& canvas() { return *ui_.window.findChild<PreviewCanvas*>(); }
  void Wait() {
    ui_.window.Loader().Wait();
    UiWorld::Turn();
  }

  UiWorld ui_;
  std::string picture_ = ui_.world.folder.Path("红.png");
};

TEST_F(PreviewWindow, ShowsThePictureOfTheRecord) {
  EXPECT_FALSE(canvas().HasPicture());
  ui_.program.ShowInPreview(picture_);
  Wait();
  ASSERT_TRUE(canvas().HasPicture());
  const QRectF shown = canvas().PictureRect();
  EXPECT_NEAR(shown.width() / shown.height(), 2.0, 0.01);
}

TEST_F(PreviewWindow, FollowsTheParameters) {
  ui_.program.ShowInPreview(picture_);
  Wait();
  ui_.program.form1.ChCutA.Set(false);
  Put(ui_, ui_.program.form1.TCutValue[3], "0");
  Put(ui_, ui_.program.form1.TCutValue[0], "50");
  EXPECT_EQ(canvas().FrameText(), QStringLiteral("20 × 20 px　1.7 × 1.7 mm"));  // written with 300 dpi
  const QRectF shown = canvas().PictureRect();
  EXPECT_NEAR(canvas().FrameRect().left(), shown.center().x(), 0.5);
  EXPECT_NEAR(canvas().FrameRect().right(), shown.right(), 0.5);
}

TEST_F(PreviewWindow, SaysWhichValuesCountAndOffersTheFrame) {
  const auto named = [this](const char* name) { return ui_.window.findChild<QWidget*>(QString::fromLatin1(name)); };
  ui_.program.ShowInPreview(picture_);
  Wait();
  job::Form1& form = ui_.program.form1;
  form.ChFixCut.Set(true);
  Put(ui_, form.TFixWH[0], "10");
  Put(ui_, form.TFixWH[1], "5");
  Put(ui_, form.TCutValue[3], "0");
  UiWorld::Turn();
  EXPECT_TRUE(named("frameNotice")->isVisible());
  auto* text = ui_.window.findChild<QLabel*>(QStringLiteral("frameNoticeText"));
  EXPECT_EQ(text->text(), QStringLiteral("右边、下边按“宽 10、高 5”去掉"));
  EXPECT_NEAR(canvas().ResultRect().width() / canvas().FrameRect().width(), 3.0, 0.01);
  EXPECT_TRUE(canvas().FrameText().startsWith(QStringLiteral("30 × 15 px")));
  QTest::mouseClick(named("noticeFramed"), Qt::LeftButton);
  EXPECT_TRUE(form.ChAsFramed.On());
  EXPECT_FALSE(named("frameNotice")->isVisible());
  EXPECT_TRUE(canvas().FrameText().startsWith(QStringLiteral("10 × 5 px")));
  form.ChAsFramed.Set(false);
  UiWorld::Turn();
  EXPECT_TRUE(named("frameNotice")->isVisible());
  EXPECT_FALSE(named("noticePercent")->isVisible()) << "it would end the fixed cut";
  form.ChFixCut.Set(false);
  UiWorld::Turn();
  EXPECT_TRUE(named("noticePercent")->isVisible());
  Put(ui_, form.TCutValue[0], "37");
  UiWorld::Turn();
  EXPECT_TRUE(named("frameNotice")->isVisible());
  EXPECT_FALSE(named("noticePercent")->isVisible()) << "92 % is above the limit of the margin, so the frame would move";
  Put(ui_, form.TCutValue[0], "0");
  UiWorld::Turn();
  QTest::mouseClick(named("noticePercent"), Qt::LeftButton);
  EXPECT_FALSE(form.ChCutA.On());
  EXPECT_FALSE(named("frameNotice")->isVisible());
}

TEST_F(PreviewWindow, AFileThatIsNoPictureShowsTheHint) {
  ui_.program.ShowInPreview(picture_);
  Wait();
  const std::string broken = ui_.world.folder.Write("坏.png", "no picture");
  ui_.program.fCutPre.preview.ShowPicture(broken, {10, 10});
  Wait();
  EXPECT_FALSE(canvas().HasPicture());
}

TEST_F(PreviewWindow, HidesItsDetails) {
  ui_.program.ShowInPreview(picture_);
  Wait();
  QLabel* size = nullptr;
  for (QLabel* label : ui_.window.findChild<QWidget*>(QStringLiteral("FCutPre"))->findChildren<QLabel*>()) {
    if (label->text() == QStringLiteral("40 × 20")) size = label;
  }
  ASSERT_NE(size, nullptr);
  EXPECT_FALSE(size->isHidden());
  Put(ui_, ui_.program.fCutPre.ChHideShow, "1");
  EXPECT_TRUE(size->isHidden());
}

TEST_F(PreviewWindow, ADoubleClickedRowIsShown) {
  ui_.List(picture_, 40, 20);
  ui_.program.form1.MSF.Select(1);
  ui_.program.form1.MSF.DoubleClick();
  Wait();
  EXPECT_TRUE(canvas().HasPicture());
}

}  // namespace
}  // namespace quillon::ui
