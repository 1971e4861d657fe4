// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>

#include "job/program.h"
#include "job/settings/collaborators.h"
#include "regions/frame/decision.h"
#include "regions/frame/frame_math.h"

namespace quillon::regions {

// The keys of the manual step; true while the key is held.
struct Keys {
  bool Ctrl = false;
  bool A = false;
  bool Q = false;
  bool Shift = false;
  bool Z = false;
};

// The behaviour of the window FCutPre: the cut frame over the picture, the buttons and keys, and the manual step of a
// run, which waits for them. Coordinates are in pixels of the picture on show, whatever the zoom.
//
// The code is in three files: cut_frame.cpp (drawing and moving the frame, writing it back to the margins),
// cut_frame_picture.cpp (showing, turning and padding the picture) and cut_frame_step.cpp (the manual step).
class CutFrame final : public job::ManualFrame {
 public:
  explicit CutFrame(job::Program& program);
  ~CutFrame() override;
  CutFrame(const CutFrame&) = delete;
  CutFrame& operator=(const CutFrame&) = delete;

  // --- job::ManualFrame
  std::string Ask(const job::ManualPicture& picture, const std::string& earlier) override;
  host::Status LastTurn() const override { return lastTurn_; }
  host::Status ClonePicture(imaging::Image& out) override;
  void Shown() override { FitSlider(); }
  void Rest() override;

  // Returns the zoom relative to the fitted size: 1 if the picture is shown as large as it fits.
  double Zoom() const { return static_cast<double>(lastZoom_) / fitted_; }
  // Returns the rectangle that the parameters cut out of the picture on show. It can differ from the frame.
  base::Rect Result() const;

  // Returns true while a run waits for the user's answer to a picture.
  bool Waiting() const { return waiting_; }
  // Returns the listed path of the picture that a run has asked about last, "" if no run is under way. The file on show
  // may be a work file.
  const std::string& Asked() const { return asked_; }
  // Returns true if mouse and keys can change the frame: there is a picture, ChFull is off, and no run goes on that
  // does not wait.
  bool Editable() const;
  // Returns true while the pointer draws, moves or resizes the frame.
  bool Dragging() const { return drag_ != Drag::None; }
  // Returns true if the size of the frame is fixed (ChFixCut).
  bool Fixed() const;

  // --- The mouse. All of these do nothing unless Editable().
  // Starts a new frame at the pointer.
  void Pic_MouseDown(Point at);
  // Starts to move the present frame, or the sides that grip names. A fixed frame can only be moved.
  void Pic_MouseDown(Point at, Grip grip);
  void Pic_MouseMove(Point at);
  // Ends the drag and writes the frame back to TCutValue. A press without a drag clears a frame that is not fixed, and
  // then TCutValue stays.
  void Pic_MouseUp();

  // --- The keys. These do nothing unless Editable(), and nothing during a drag.
  // Moves the frame by whole pixels.
  void Nudge(int across, int down);
  // Moves the right and the lower side of the frame by whole pixels. Does nothing with a fixed size.
  void Stretch(int across, int down);

  // Switches the frame to its other appearance, and presses the button of the first key that is held, in the order of
  // Keys. Does nothing during a drag; keys count only while a run waits.
  void Timer1_Timer(const Keys& held);

  void CmdNext_Click();
  void CmdNotCut_Click();
  void CmdAddBoard_Click();
  void CmdRot90_Click() { Rotate(Window().CmdRot90, 90); }
  void CmdRot270_Click() { Rotate(Window().CmdRot270, -90); }
  void Slider1_Change();

 private:
  enum class Drag { None, Draw, Adjust };  // a new frame, or the present one

  job::FCutPre& Window() const { return program_.fCutPre; }
  job::Preview& Preview() const { return program_.fCutPre.preview; }
  FrameRule Rule() const;
  // Returns width over height of the preset or fixed size; nothing if neither is set.
  std::optional<double> Ratio() const;
  // Returns the frame as it is once it is written back: inside the picture, and centred if that is chosen.
  job::PreviewFrame Settled(const job::PreviewFrame& frame) const;
  // Returns the margins of a settled frame.
  std::array<double, 4> MarginsOf(const job::PreviewFrame& frame) const;
  // Writes the margins of the settled frame to TCutValue.
  void WriteBack();
  // Shows what would be cut if the drag ended now.
  void ShowDragged();
  // Lets the margins place a cut of an exact size, if the frame is not where CmbAnchor places it.
  void LeaveAnchor(double left, double top);
  // Returns whether the frame of an exact size is not where CmbAnchor places it.
  bool OffAnchor(double left, double top) const;

  // Shows the picture of a file. If image is not empty, it holds that picture already (read or turned) and is shown
  // instead. A picture that the options turn before the cut is shown turned.
  void UpdateImage(const std::string& path, const imaging::Image& image);
  // Returns the picture on show as the options turn it; no image if they do not turn it or it cannot be loaded.
  imaging::Image TurnedByOptions(base::Size size);
  // Returns the file to show: path, or a reduced or turned copy in the program folder.
  std::string ShownFile(const std::string& path, const imaging::Image& image, base::Size size);
  host::Status SaveWorkCopy(const imaging::Image& image, const std::string& path, imaging::Exif exif);
  // Returns one of the two work files of this window, but not path itself.
  std::string OtherWorkFile(const std::string& path) const;
  void FitSlider();
  void ShowScrollBars();
  void EnableForPicture();
  // Pumps until the user has answered or the run is stopped.
  void Wait();
  bool OptionsTurn() const;
  void EndWait();
  // Repeats what the user decided about this picture in an earlier part of the run.
  void Replay(const Decision& decision);
  Decision Decided() const;
  // Asks once in a run how to cut if the frame that the user has placed is not what would be cut.
  void AskAboutFrame();
  void Rotate(controls::Button& button, double angle);
  host::Status Turn(double angle);
  bool MayRotate(controls::Button& button);
  // Asks if the picture would have no output because a work file of the frame has another type than the output.
  bool MayLoseOutput();
  void PadToRatio();
  void PollKeys(const Keys& held);

  job::Program& program_;
  std::string asked_;
  std::string whyNotTurned_;  // of the picture on show, as in ManualPicture
  std::string steps_;         // turns and padding of the picture on show, as in Decision
  host::Status lastTurn_;     // of the picture on show
  bool frameAsked_ = false;   // AskAboutFrame has asked in this run
  bool byPercent_ = false;    // ChCutA was off when the run began
  bool asFramed_ = false;     // ChAsFramed was on when the run began
  bool waiting_ = false;
  Drag drag_ = Drag::None;
  Grip grip_;
  Point anchor_;                    // where the pointer went down
  job::PreviewFrame frameAtPress_;  // the frame at that time
  bool moved_ = false;              // the pointer has moved since
  int fitted_ = 100;                // the zoom at which the picture fits, in per cent, as Slider1 has it
  int lastZoom_ = 100;              // the present zoom, in per cent
};

}  // namespace quillon::regions
