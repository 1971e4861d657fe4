// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The frame itself: how it is drawn and moved, and how it is written back to the parameters.
//
// The frame and the margins (TCutValue) are kept in step in both directions. A margin that changes moves the frame
// (Form1::ShowFrame); the end of a drag writes all four margins. Written margins are rounded, so the frame then moves
// once more and ends exactly where the margins say.
#include "regions/frame/cut_frame.h"

#include <algorithm>

#include "base/rounding.h"
#include "job/settings/cut_settings.h"
#include "job/settings/mode_rectangle.h"

namespace quillon::regions {
namespace {

constexpr int kSmallestShown = 32;  // the least length of the shorter side, in pixels of the screen

}  // namespace

CutFrame::CutFrame(job::Program& program) : program_(program) {
  job::FCutPre& window = Window();
  window.CmdNext.SetHandler([this] { CmdNext_Click(); });
  window.CmdNotCut.SetHandler([this] { CmdNotCut_Click(); });
  window.CmdAddBoard.SetHandler([this] { CmdAddBoard_Click(); });
  window.CmdRot90.SetHandler([this] { CmdRot90_Click(); });
  window.CmdRot270.SetHandler([this] { CmdRot270_Click(); });
  window.Slider1.SetHandler([this] { Slider1_Change(); });
  program_.manualFrame = this;
}

CutFrame::~CutFrame() {
  program_.manualFrame = nullptr;
  job::FCutPre& window = Window();
  for (controls::Control* control :
       std::initializer_list<controls::Control*>{&window.CmdNext, &window.CmdNotCut, &window.CmdAddBoard,
                                                 &window.CmdRot90, &window.CmdRot270, &window.Slider1}) {
    control->SetHandler({});
  }
}

bool CutFrame::Editable() const {
  return !program_.form1.ChFull.On() && !Preview().Picture().Empty() && (waiting_ || !program_.flags.Busy);
}

bool CutFrame::Fixed() const { return program_.form1.ChFixCut.On(); }

std::optional<double> CutFrame::Ratio() const {
  const job::Flags& flags = program_.flags;
  const bool preset = program_.form1.CmbKeepCut.Index() > job::kCustomSize;
  if ((!preset && !Fixed()) || flags.FixW <= 0 || flags.FixH <= 0) return std::nullopt;
  return static_cast<double>(flags.FixW) / flags.FixH;
}

FrameRule CutFrame::Rule() const { return {Fixed(), Fixed() ? std::nullopt : Ratio()}; }

void CutFrame::Pic_MouseDown(Point at) {
  if (!Editable()) return;
  drag_ = Drag::Draw;
  anchor_ = at;
  frameAtPress_ = Preview().PictureFrame();
  moved_ = false;
  Preview().SetSecondLook(false);
}

void CutFrame::Pic_MouseDown(Point at, Grip grip) {
  Pic_MouseDown(at);
  if (drag_ == Drag::None) return;
  drag_ = Drag::Adjust;
  grip_ = Fixed() ? Grip() : grip;
}

void CutFrame::Pic_MouseMove(Point at) {
  if (drag_ == Drag::None) return;
  moved_ = true;
  job::PreviewFrame frame = frameAtPress_;
  const Point by{at.x - anchor_.x, at.y - anchor_.y};
  if (drag_ == Drag::Draw && Fixed()) {
    frame.left = at.x;
    frame.top = at.y;
  } else if (drag_ == Drag::Draw) {
    frame = Stretched(anchor_, at);
  } else if (grip_ == Grip()) {
    frame.left += by.x;
    frame.top += by.y;
  } else {
    frame = Resized(frameAtPress_, grip_, by, Ratio());
  }
  Preview().SetPictureFrame(frame);
  ShowDragged();
}

void CutFrame::Pic_MouseUp() {
  if (drag_ == Drag::None) return;
  drag_ = Drag::None;
  if (!Editable()) return;
  if (!moved_ && !Fixed()) {
    Preview().SetPictureFrame({});
    return;
  }
  WriteBack();
  // What waits for the end of the drag is shown even if nothing else has changed.
  Preview().Refresh();
}

void CutFrame::Nudge(int across, int down) {
  if (!Editable() || drag_ != Drag::None) return;
  job::PreviewFrame frame = Preview().PictureFrame();
  frame.left += across;
  frame.top += down;
  Preview().SetPictureFrame(frame);
  WriteBack();
}

void CutFrame::Stretch(int across, int down) {
  if (!Editable() || drag_ != Drag::None || Fixed()) return;
  const Grip grip{across != 0 ? 1 : 0, down != 0 ? 1 : 0};
  const Point by{static_cast<double>(across), static_cast<double>(down)};
  Preview().SetPictureFrame(Resized(Preview().PictureFrame(), grip, by, Ratio()));
  WriteBack();
}

job::PreviewFrame CutFrame::Settled(const job::PreviewFrame& frame) const {
  const base::Size picture = Preview().Picture();
  job::PreviewFrame settled = Constrained(frame, picture, Rule());
  // An exact size is placed by its anchor.
  if (program_.form1.ChAutoCenter.On() && !job::ReadCutGeometry(program_).Exact()) {
    settled.left = (picture.width - settled.width) / 2;
    settled.top = (picture.height - settled.height) / 2;
  }
  return settled;
}

std::array<double, 4> CutFrame::MarginsOf(const job::PreviewFrame& frame) const {
  WriteBackRule rule{program_.form1.ChCutA.On() ? Unit::Pixels : Unit::Percent, Fixed(), program_.flags.FixW,
                     program_.flags.FixH};
  rule.PreviewScale = Window().Slider1.Position() / 100.0;
  return WrittenBack(frame, Preview().Picture(), rule);
}

// Each margin that is set moves the frame, so all four are computed before the first is set.
void CutFrame::WriteBack() {
  job::Form1& form = program_.form1;
  if (form.ChFull.On() || Preview().Picture().Empty()) return;
  const job::PreviewFrame frame = Settled(Preview().PictureFrame());
  Preview().SetPictureFrame(frame);
  const std::array<double, 4> values = MarginsOf(frame);
  LeaveAnchor(frame.left, frame.top);
  for (std::size_t i = 0; i < values.size(); ++i) form.TCutValue[i].SetNumber(values[i]);
  // The margins may be the same as before.
  form.ShowResult(job::ReadCutGeometry(program_));
}

// A margin below 0 becomes 0 when it is written.
void CutFrame::ShowDragged() {
  const job::PreviewFrame frame = Settled(Preview().PictureFrame());
  std::array<double, 4> values = MarginsOf(frame);
  for (double& value : values) value = std::max(value, 0.0);
  job::CutGeometry geometry = job::ReadCutGeometry(program_);
  if (OffAnchor(frame.left, frame.top)) geometry.CmbAnchor = job::kAnchorByMargins;
  geometry.ML = values[0];
  geometry.MT = values[1];
  geometry.MR = values[2];
  geometry.MB = values[3];
  program_.form1.ShowResult(geometry);
}

bool CutFrame::OffAnchor(double left, double top) const {
  const job::CutGeometry geometry = job::ReadCutGeometry(program_);
  if (!geometry.Exact()) return false;
  const job::PreviewFrame anchored = job::FrameOf(geometry, Preview().Picture());
  return left != anchored.left || top != anchored.top;
}

void CutFrame::LeaveAnchor(double left, double top) {
  if (OffAnchor(left, top)) program_.form1.CmbAnchor.Select(job::kAnchorByMargins);
}

void CutFrame::Timer1_Timer(const Keys& held) {
  if (drag_ != Drag::None) return;
  Preview().SetSecondLook(!Preview().SecondLook());
  PollKeys(held);
}

void CutFrame::PollKeys(const Keys& held) {
  if (!waiting_) return;
  // The first key that is held counts, even if its button is disabled.
  const auto press = [](controls::Button& button, auto act) {
    if (button.OwnEnabled()) act();
  };
  job::FCutPre& window = Window();
  if (held.Ctrl) {
    press(window.CmdNext, [this] { CmdNext_Click(); });
  } else if (held.A) {
    press(window.CmdRot90, [this] { CmdRot90_Click(); });
  } else if (held.Q) {
    press(window.CmdRot270, [this] { CmdRot270_Click(); });
  } else if (held.Shift) {
    press(window.CmdAddBoard, [this] { CmdAddBoard_Click(); });
  } else if (held.Z) {
    press(window.CmdNotCut, [this] { CmdNotCut_Click(); });
  }
}

base::Rect CutFrame::Result() const {
  const auto mode = job::Selected<job::CutMode>(program_.form1.CmbCutMode);
  return job::RectangleOfMode(mode, job::ReadCutGeometry(program_), Preview().Picture());
}

// --- Zoom

void CutFrame::FitSlider() {
  const double scale = FittedScale(Preview().Picture(), program_.host.screen.DesktopSize());
  fitted_ = lastZoom_ = std::max(1, base::R(scale * 100));
  Window().Slider1.Set(lastZoom_);
  Preview().SetScale(lastZoom_ / 100.0);
  ShowScrollBars();
}

// A zoom that would make the picture too small is refused, but only on the way down: a small picture that is fitted is
// below the limit from the start.
void CutFrame::Slider1_Change() {
  const int zoom = Window().Slider1.Position();
  const base::Size picture = Preview().Picture();
  const bool small = std::min(picture.width, picture.height) * zoom / 100 < kSmallestShown;
  if (small && zoom < lastZoom_) {
    program_.host.boxes.Beep();
    Window().Slider1.Set(lastZoom_);
    return;
  }
  lastZoom_ = zoom;
  Preview().SetScale(zoom / 100.0);
  ShowScrollBars();
}

// The range of the scroll bars is the part of the picture that does not fit, in thousandths of the visible part.
void CutFrame::ShowScrollBars() {
  const int hidden = std::max(0, base::R(Zoom() * 1000) - 1000);
  for (controls::Slider* bar : {&Window().HS, &Window().VS}) {
    bar->SetRange(0, hidden);
    bar->SetVisible(hidden > 0 && !Window().ChHideShow.On());
  }
}

}  // namespace quillon::regions
