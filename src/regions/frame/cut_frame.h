// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "job/program.h"
#include "job/settings/collaborators.h"
#include "regions/frame/decisions.h"
#include "regions/frame/frame_math.h"

namespace quillon::regions {

// The keys that steer the manual step, as they are held.
struct Keys {
  bool Ctrl = false;
  bool A = false;
  bool Q = false;
  bool Shift = false;
  bool Z = false;
};

// What FCutPre does: the frame over the picture, its buttons and keys, and the step of a batch that waits for them.
// All places are in pixels of the picture.
class CutFrame final : public job::ManualFrame {
 public:
  explicit CutFrame(job::Program& program);
  ~CutFrame() override;
  CutFrame(const CutFrame&) = delete;
  CutFrame& operator=(const CutFrame&) = delete;

  Answer Ask(const std::string& source, const imaging::Image& turned) override;
  host::Status ClonePicture(imaging::Image& out) override;
  void Shown() override { FitSlider(); }
  void Rest() override;

  // How much larger than fitted the picture is shown.
  double Zoom() const { return static_cast<double>(lastZoom_) / fitted_; }
  // What the parameters would cut out of the picture on show, be it another part than the frame.
  base::Rect Result() const;

  // A batch waits for the answer.
  bool Waiting() const { return waiting_; }
  // The mouse and the keys act on the frame: there is a picture, ChFull is off, and no run is at work on its own.
  bool Draws() const;
  // The frame keeps its size.
  bool Fixed() const;
  // A frame that is to be drawn anew where the pointer goes down, or one that the pointer takes hold of.
  void Pic_MouseDown(Point at);
  void Pic_MouseDown(Point at, Grip grip);
  void Pic_MouseMove(Point at);
  void Pic_MouseUp();
  // By keys: the frame, or its right and lower side, in whole pixels.
  void Nudge(int across, int down);
  void Stretch(int across, int down);
  // Turns to the frame's other look and does what the first of the held keys stands for; nothing while it is drawn.
  void Timer1_Timer(const Keys& held);

  void CmdNext_Click();
  void CmdNotCut_Click();
  void CmdAddBoard_Click();
  void CmdRot90_Click() { Rotate(Window().CmdRot90, 90); }
  void CmdRot270_Click() { Rotate(Window().CmdRot270, -90); }
  void Slider1_Change();

 private:
  enum class Drag { None, Draw, Hold };

  job::FCutPre& Window() const { return program_.fCutPre; }
  job::Preview& Preview() const { return program_.fCutPre.preview; }
  FrameRule Rule() const;
  std::optional<double> Ratio() const;
  // Puts the frame into the picture and its margins into TCutValue.
  void WriteBack();

  // Shows the picture of a file; an image that holds it already, turned or read, is shown in its place. What the
  // options turn before they cut it is shown turned.
  void UpdateImage(const std::string& path, const imaging::Image& image);
  // The picture of the file as the options turn it, no image where they do not or where it does not load.
  imaging::Image TurnedByOptions(base::Size size);
  // The file to show for a picture: itself, or a reduced or turned copy in the program folder.
  std::string ShownFile(const std::string& path, const imaging::Image& image, base::Size size);
  std::string OtherWorkFile(const std::string& path) const;
  void FitSlider();
  void ShowScrollBars();
  void EnableForPicture();
  void Wait();
  bool OptionsTurn() const;
  void EndWait();
  // Does again what was decided at this picture in an earlier part of the run.
  void Replay(const Decision& decision);
  Decision Decided() const;
  // The listed file that stands behind the picture on show, which may be a work file.
  std::string ListedSource(const std::string& source) const;
  void Rotate(controls::Button& button, double angle);
  void Turn(double angle);
  bool MayRotate(controls::Button& button);
  void Grow();
  void PollKeys(const Keys& held);

  job::Program& program_;
  Decisions decisions_;
  std::string steps_;  // what was done to the picture on show
  bool waiting_ = false;
  Drag drag_ = Drag::None;
  Grip grip_;
  Point anchor_;
  job::PreviewFrame begun_;  // the frame when the pointer went down
  bool moved_ = false;
  int fitted_ = 100;  // of Slider1, as is lastZoom_
  int lastZoom_ = 100;
};

}  // namespace quillon::regions
