// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The user's mouse, wheel and keys over the preview, and the window of the manual step.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSemaphore>
#include <QWheelEvent>

#include "ui/preview/frame_mouse.h"
#include "ui/preview/frame_painter.h"
#include "ui/preview/key_overlay.h"
#include "ui/preview/preview_canvas.h"
#include "ui/preview/preview_dock.h"
#include "ui/preview/preview_loader.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

using job::PreviewFrame;

class FrameUi : public ::testing::Test {
 protected:
  FrameUi() {
    form_.ChCutA.Set(true);
    ui_.program.fCutPre.Show();
    ui_.program.ShowPicture("/none.jpg", {400, 300});
    UiWorld::Turn();
    ui_.window.Loader().Wait();
    UiWorld::Turn();
    canvas_.SetPicture(QImage(80, 60, QImage::Format_RGB32));
    for (controls::TextBox& margin : form_.TCutValue) margin.SetText("0");
  }

  // Returns the point of the canvas for a position in the picture.
  QPoint At(double x, double y) { return canvas_.Placed({x, y, 0, 0}).topLeft().toPoint(); }
  void Drag(QPoint from, QPoint to) {
    QTest::mousePress(&canvas_, Qt::LeftButton, {}, from);
    QTest::mouseMove(&canvas_, (from + to) / 2);
    QTest::mouseMove(&canvas_, to);
    QTest::mouseRelease(&canvas_, Qt::LeftButton, {}, to);
  }
  void ExpectFrame(const PreviewFrame& expected) {
    const PreviewFrame& frame = preview_.PictureFrame();
    const double pixel = 1.5 * 400 / canvas_.PictureRect().width() + 1;
    EXPECT_NEAR(frame.left, expected.left, pixel);
    EXPECT_NEAR(frame.top, expected.top, pixel);
    EXPECT_NEAR(frame.width, expected.width, 2 * pixel);
    EXPECT_NEAR(frame.height, expected.height, 2 * pixel);
  }
  void Wheel(QPointF at, int delta) {
    QWheelEvent event(at, canvas_.mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas_, &event);
  }

  UiWorld ui_;
  job::Form1& form_ = ui_.program.form1;
  job::FCutPre& cutPre_ = ui_.program.fCutPre;
  job::Preview& preview_ = cutPre_.preview;
  PreviewCanvas& canvas_ = *ui_.window.findChild<PreviewCanvas*>();
};

TEST_F(FrameUi, TheMouseDrawsAFrame) {
  Drag(At(40, 30), At(240, 180));
  ExpectFrame({40, 30, 200, 150});
  EXPECT_EQ(form_.TCutValue[0].Number(), preview_.PictureFrame().left);
  EXPECT_EQ(std::floor(preview_.PictureFrame().width), preview_.PictureFrame().width);
}

TEST_F(FrameUi, APressOutsideDrawsANewFrame) {
  Drag(At(40, 30), At(140, 130));
  Drag(At(390, 290), At(200, 200));
  ExpectFrame({200, 200, 190, 90});
}

TEST_F(FrameUi, AFrameIsMovedByItsInsideAndResizedByItsSides) {
  Drag(At(40, 30), At(240, 180));
  Drag(At(140, 100), At(160, 110));
  ExpectFrame({60, 40, 200, 150});
  Drag(At(260, 115), At(300, 115));
  ExpectFrame({60, 40, 240, 150});
  Drag(At(60, 40), At(100, 60));
  ExpectFrame({100, 60, 200, 130});
}

TEST_F(FrameUi, APressAloneClearsTheFrame) {
  Drag(At(40, 30), At(240, 180));
  const std::string before = form_.TCutValue[0].Value();
  QTest::mouseClick(&canvas_, Qt::LeftButton, {}, At(350, 280));
  EXPECT_EQ(preview_.PictureFrame(), PreviewFrame());
  EXPECT_EQ(form_.TCutValue[0].Value(), before);
}

TEST_F(FrameUi, ArrowsMoveTheFrameByPixels) {
  Drag(At(40, 30), At(240, 180));
  const PreviewFrame before = preview_.PictureFrame();
  canvas_.setFocus();
  QTest::keyClick(&canvas_, Qt::Key_Right);
  EXPECT_EQ(preview_.PictureFrame().left, before.left + 1);
  QTest::keyClick(&canvas_, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(preview_.PictureFrame().top, before.top + 10);
  QTest::keyClick(&canvas_, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(preview_.PictureFrame().width, before.width - 1);
}

TEST_F(FrameUi, TheWheelZoomsAboutThePointer) {
  const QPointF at = At(100, 100);
  const regions::Point before = canvas_.PlaceAt(at);
  Wheel(at, 120);
  Wheel(at, 120);
  Wheel(at, 120);
  EXPECT_GT(cutPre_.Slider1.Position(), 100);
  EXPECT_GT(canvas_.PictureRect().width(), canvas_.width());
  const regions::Point after = canvas_.PlaceAt(at);
  EXPECT_NEAR(after.x, before.x, 4);
  for (int i = 0; i < 3; ++i) Wheel(at, -120);
  EXPECT_EQ(cutPre_.Slider1.Position(), 100);
  EXPECT_EQ(ZoomStep(1, 1), 2);
  EXPECT_EQ(ZoomStep(2, -1), 1);
}

TEST_F(FrameUi, TheScrollBarsMoveThePictureAndNoMargin) {
  Drag(At(40, 30), At(240, 180));
  const std::string before = form_.TCutValue[0].Value();
  cutPre_.Slider1.Set(300);
  UiWorld::Turn();
  auto* across = ui_.Find<QScrollBar>(cutPre_.HS);
  ASSERT_NE(across, nullptr);
  EXPECT_FALSE(across->isHidden());
  const double left = canvas_.PictureRect().left();
  across->setValue(across->maximum());
  EXPECT_LT(canvas_.PictureRect().left(), left);
  EXPECT_EQ(form_.TCutValue[0].Value(), before);
}

TEST_F(FrameUi, AFixedFrameHasTheCursorOfMoving) {
  QTest::mouseMove(&canvas_, At(200, 150));
  EXPECT_EQ(canvas_.cursor().shape(), Qt::CrossCursor);
  form_.ChFixCut.Set(true);
  for (const QPoint place : {At(20, 20), At(390, 290)}) {
    QTest::mouseMove(&canvas_, place);
    EXPECT_EQ(canvas_.cursor().shape(), Qt::SizeAllCursor);
  }
}

TEST_F(FrameUi, AGlanceReplacesThePictureUntilAnotherIsShown) {
  QImage red(80, 60, QImage::Format_RGB32);
  red.fill(Qt::red);
  canvas_.SetGlance(red);
  EXPECT_TRUE(canvas_.Glances());
  EXPECT_EQ(canvas_.grab().toImage().pixelColor(canvas_.rect().center()), QColor(Qt::red));
  canvas_.SetPicture(QImage(80, 60, QImage::Format_RGB32));
  EXPECT_FALSE(canvas_.Glances());
  EXPECT_NE(canvas_.grab().toImage().pixelColor(canvas_.rect().center()), QColor(Qt::red));
}

TEST(FramePainter, DrawsThirdsAndTheCentre) {
  QImage black(120, 120, QImage::Format_RGB32);
  black.fill(Qt::black);
  QPainter painter(&black);
  FrameDrawing look;
  look.picture = QRectF(0, 0, 120, 120);
  look.frame = QRectF(15, 15, 90, 90);
  PaintFrame(painter, look);
  painter.end();
  const auto brightness = [&](int x, int y) {
    return qMax(qGray(black.pixel(x, y)), qMax(qGray(black.pixel(x - 1, y)), qGray(black.pixel(x, y - 1))));
  };
  for (const int third : {45, 75}) {
    EXPECT_GT(brightness(third, 25), 20) << third;
    EXPECT_GT(brightness(25, third), 20) << third;
  }
  EXPECT_LT(brightness(35, 25), 10);
  EXPECT_GT(brightness(60, 60), 40);
}

TEST(FramePainter, KeepsTheLabelInsideWhatIsVisible) {
  for (const int left : {0, 195}) {
    QImage view(240, 60, QImage::Format_RGB32);
    view.fill(Qt::red);
    QPainter painter(&view);
    FrameDrawing drawing;
    drawing.picture = QRectF(0, 0, 240, 60);
    drawing.visible = QRectF(20, 0, 200, 60);
    drawing.frame = QRectF(20 + left, 0, 5, 60);
    drawing.label = QStringLiteral("5 × 60 px");
    PaintFrame(painter, drawing);
    painter.end();
    int white = 0;
    for (int y = 0; y < view.height(); ++y) {
      for (const auto& [from, to] : {std::pair(0, 17), std::pair(223, 240)}) {
        for (int x = from; x < to; ++x) white += qGreen(view.pixel(x, y)) > 60 ? 1 : 0;
      }
    }
    EXPECT_EQ(white, 0) << left;
  }
}

TEST_F(FrameUi, MillimetresAreShownIfTheResolutionIsKnown) {
  preview_.SetPictureFrame({0, 0, 300, 150});
  EXPECT_EQ(canvas_.FrameText(), QStringLiteral("300 × 150 px"));
  preview_.SetDpi(254);
  EXPECT_EQ(canvas_.FrameText(), QStringLiteral("300 × 150 px　30.0 × 15.0 mm"));
}

// --- Regions over the picture

TEST_F(FrameUi, RegionsArePickedAndMoved) {
  regions::FMultCut& window = ui_.suite.regions.fMultCut;
  window.Show();
  for (const char* left : {"50", "200"}) {
    form_.TCutValue[0].SetText(left);
    form_.TCutValue[1].SetText("50");
    form_.TCutValue[2].SetText(std::string(left) == "50" ? "250" : "100");
    form_.TCutValue[3].SetText("150");
    window.CmdAdd.UserClick();
  }
  ASSERT_EQ(window.MSFlexGrid1.RowCount(), 2u);
  QTest::mousePress(&canvas_, Qt::LeftButton, {}, At(52, 52));
  EXPECT_EQ(window.MSFlexGrid1.Selected(), 1u);
  QTest::mouseMove(&canvas_, At(72, 52));
  QTest::mouseRelease(&canvas_, Qt::LeftButton, {}, At(72, 52));
  EXPECT_NEAR(std::stod(window.MSFlexGrid1.Cell(0, 1)), 70, 4);
  EXPECT_EQ(window.MSFlexGrid1.Cell(1, 1), "200");
  // The margins of the frame do not change.
  EXPECT_EQ(form_.TCutValue[0].Value(), "200");
  window.Close();
}

// --- The manual step

class StepUi : public FrameUi {
 protected:
  StepUi() {
    ui_.program.fBaseOpt.Load();
    form_.ChCutA.Set(false);
    form_.LOutDir.SetText(ui_.world.folder.Path());
    form_.CmbOutType.SetText("png");
    for (const char* name : {"a.png", "b.png"}) {
      imaging::Image image;
      EXPECT_TRUE(ui_.program.images.NewCanvas({40, 20}, base::Colour{0x0000FF}, image));
      EXPECT_TRUE(ui_.program.images.SaveImageToPngFile(image, ui_.world.folder.Path(std::string("in_") + name)));
      ui_.List(ui_.world.folder.Path(std::string("in_") + name), 40, 20);
    }
    ui_.world.pump.EveryTurn([this] { Turn(); });
  }
  PreviewDock& Dock() { return *ui_.window.findChild<PreviewDock*>(); }
  // Runs the manual cut. act runs at the first picture; then the rest is stopped.
  void RunWith(const std::function<void()>& act) {
    ui_.program.flags.ManualCutMode = true;
    act_ = act;
    form_.menuNormalCut.UserClick();
    EXPECT_FALSE(act_);
    UiWorld::Turn();
  }
  void Turn() {
    if (!ui_.suite.regions.cutFrame.Waiting()) {
      if (canvas_.Glances()) ++glances_;
      return;
    }
    EXPECT_FALSE(canvas_.Glances());
    UiWorld::Turn();
    if (const auto act = std::exchange(act_, {})) {
      act();
    } else {
      ui_.program.flags.StopRequested = true;
    }
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : &canvas_, static_cast<Qt::Key>(key), modifiers);
  }

  std::function<void()> act_;
  int glances_ = 0;  // turns between two steps that showed the next picture
};

TEST_F(StepUi, TheWindowFloatsWithItsButtonsAndGoesBack) {
  EXPECT_FALSE(Dock().isFloating());
  RunWith([this] {
    EXPECT_TRUE(Dock().isFloating());
    auto* next = ui_.Find<QPushButton>(cutPre_.CmdNext);
    EXPECT_TRUE(next->isVisible());
    EXPECT_TRUE(next->isEnabled());
    EXPECT_GT(Dock().width(), 600);
    next->click();
    EXPECT_TRUE(ui_.program.flags.ManualStepDone);
  });
  EXPECT_FALSE(Dock().isFloating());
}

TEST_F(StepUi, TheWindowComesBackToItsLastPlace) {
  const QRect place(100, 80, 700, 500);
  RunWith([&] {
    EXPECT_NE(Dock().geometry(), place);
    Dock().setGeometry(place);
  });
  RunWith([&] { EXPECT_EQ(Dock().geometry(), place); });
  // A position outside every screen is ignored.
  ui_.program.SaveSetting("FCutPre", "90000 90000 700 500");
  RunWith([&] { EXPECT_TRUE(ui_.window.screen()->geometry().contains(Dock().geometry().center())); });
}

TEST_F(StepUi, AClickOnATurnLeavesTheSpaceBarToGoOn) {
  RunWith([this] {
    QTest::mouseClick(ui_.Find<QPushButton>(cutPre_.CmdRot90), Qt::LeftButton);
    EXPECT_EQ(ui_.world.boxes.Count("确定旋转？"), 1);
    EXPECT_EQ(QApplication::focusWidget(), ui_.Find<QPushButton>(cutPre_.CmdNext));
    Key(Qt::Key_Space);
    EXPECT_TRUE(ui_.program.flags.ManualStepDone);
  });
}

TEST_F(StepUi, TheNextPictureIsSeenAsSoonAsThisOneIsLeft) {
  RunWith([this] {
    ui_.window.Loader().Wait();
    cutPre_.CmdNext.UserClick();
  });
  EXPECT_GT(glances_, 0);
  EXPECT_FALSE(canvas_.Glances());
}

struct KeyCase {
  int key;
  bool skips;
};

class StepKeys : public StepUi, public ::testing::WithParamInterface<KeyCase> {};

TEST_P(StepKeys, LeaveThePicture) {
  RunWith([this] {
    canvas_.setFocus();
    Key(GetParam().key);
    EXPECT_TRUE(ui_.program.flags.ManualStepDone);
    EXPECT_EQ(ui_.program.flags.SkipCutThisImage, GetParam().skips);
  });
}

INSTANTIATE_TEST_SUITE_P(Keys, StepKeys,
                         ::testing::Values(KeyCase{Qt::Key_Space, false}, KeyCase{Qt::Key_Control, false},
                                           KeyCase{Qt::Key_Z, true}));

TEST_F(StepUi, ModifiersHeldForOtherKeysDoNothing) {
  RunWith([this] {
    canvas_.setFocus();
    QTest::keyPress(&canvas_, Qt::Key_Control);
    QTest::keyClick(&canvas_, Qt::Key_X, Qt::ControlModifier);
    QTest::keyRelease(&canvas_, Qt::Key_Control);
    EXPECT_FALSE(ui_.program.flags.ManualStepDone);
    QTest::keyClick(&canvas_, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(ui_.program.flags.ManualStepDone);
  });
}

TEST_F(StepUi, KeysAreQuietWhileTextIsTyped) {
  QLineEdit line(&Dock());
  line.show();
  RunWith([&] {
    line.setFocus();
    QTest::keyClicks(&line, QStringLiteral("zaq "));
    QTest::keyClick(&line, Qt::Key_Control);
    EXPECT_FALSE(ui_.program.flags.ManualStepDone);
    EXPECT_EQ(line.text(), QStringLiteral("zaq "));
  });
}

TEST_F(StepUi, F1ListsTheKeys) {
  auto* overlay = static_cast<KeyOverlay*>(ui_.window.findChild<QWidget*>(QStringLiteral("keyOverlay")));
  ASSERT_NE(overlay, nullptr);
  EXPECT_TRUE(overlay->isHidden());
  RunWith([&] {
    canvas_.setFocus();
    Key(Qt::Key_F1);
    EXPECT_FALSE(overlay->isHidden());
    EXPECT_FALSE(overlay->grab().isNull());
    Key(Qt::Key_F1);
    EXPECT_TRUE(overlay->isHidden());
  });
}

TEST_F(StepUi, TheNextPictureIsLoadedWhileThisOneIsShown) {
  RunWith([this] {
    ui_.window.Loader().Wait();
    UiWorld::Turn();
    EXPECT_TRUE(canvas_.HasPicture());
    EXPECT_EQ(preview_.Upcoming(), ui_.world.folder.Path("in_b.png"));
  });
}

// --- Prefetch

TEST(EarlyPicture, IsUsedAtOnceUnlessTheFileChanged) {
  std::vector<std::string> read;
  std::string version = "1";
  PreviewLoader loader([&](const std::string& path, QSize) {
    read.push_back(path);
    return QImage(5, 1, QImage::Format_RGB32);
  });
  loader.SetVersion([&](const std::string&) { return version; });
  int taken = 0;
  loader.SetReceiver([&](const QImage&) { ++taken; });
  loader.Prefetch("/next", QSize(10, 10));
  loader.Prefetch("/next", QSize(10, 10));
  loader.Wait();
  EXPECT_EQ(read.size(), 1u);
  EXPECT_FALSE(loader.Prefetched("/next", QSize(10, 10)).isNull());
  EXPECT_TRUE(loader.Prefetched("/next", QSize(20, 10)).isNull());
  EXPECT_TRUE(loader.Prefetched("/other", QSize(10, 10)).isNull());
  loader.Load("/next", QSize(10, 10));
  EXPECT_EQ(taken, 1);
  EXPECT_EQ(read.size(), 1u);
  loader.Prefetch("/other", QSize(10, 10));
  loader.Wait();
  version = "2";
  loader.Load("/other", QSize(10, 10));
  EXPECT_EQ(taken, 1);
  loader.Wait();
  UiWorld::Turn();
  EXPECT_EQ(taken, 2);
  EXPECT_EQ(read.size(), 3u);
}

}  // namespace
}  // namespace quillon::ui
