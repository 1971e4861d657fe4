// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "base/colour.h"
#include "base/rect.h"
#include "job/cut/cut_outcome.h"
#include "job/settings/geometry.h"

namespace quillon::job {

class Program;

// The border that a cut gets, drawn around the frame. In pixels of the picture; fractions come from a zoom after the
// cut.
struct PreviewBoard {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  base::Colour colour = base::kWhite;
  bool operator==(const PreviewBoard&) const = default;
  bool Empty() const { return left <= 0 && top <= 0 && right <= 0 && bottom <= 0; }
};

// What a cut of the picture on show gives.
struct PreviewResult {
  PreviewFrame cut;    // what is cut out, in pixels of the picture
  CutOutcome outcome;  // the finished file
  std::string notice;  // which values count if the frame is not what is cut, else ""
  bool operator==(const PreviewResult&) const = default;
};

// What the preview shows: a picture, the scale at which it is shown, and the cut frame that follows the parameters. The
// frame is stored in pixels of the picture itself, so that a change of the scale never moves it.
class Preview {
 public:
  Preview() = default;

  // Returns the picture's own size, before it is zoomed and turned for the cut.
  base::Size Original() const { return original_; }
  // Returns its size after it was zoomed and turned. It is shown at that size times the scale.
  base::Size Picture() const { return picture_; }
  const std::string& Path() const { return path_; }
  // Increases each time a picture is shown, even if its path is the same.
  int Showings() const { return showings_; }
  // Returns Picture() before the picture was turned.
  base::Size Upright() const { return upright_; }
  // Returns the angle by which the picture is turned, on white, before it is shown; in degrees counter-clockwise.
  double Angle() const { return angle_; }
  // Returns the frame in pixels of the shown picture.
  PreviewFrame Frame() const;
  // Returns the frame in pixels of the picture itself.
  const PreviewFrame& PictureFrame() const { return frame_; }
  const PreviewBoard& Board() const { return board_; }
  // Returns what the present parameters make of the picture; nothing if that is not known. It is forgotten when the
  // frame moves.
  const std::optional<PreviewResult>& Result() const { return result_; }
  int Shape() const { return shape_; }              // as CmbCutStyle
  int BorderStyle() const { return borderStyle_; }  // 15 with a fixed cut, else 0

  // Shows a picture of that size. path is empty if there is no picture, only an area to draw the frame in.
  void ShowPicture(std::string path, base::Size picture);
  // Gives the picture on show another size, and the angle by which it is turned then. It stays the same picture.
  void Reshape(base::Size picture, double angle);
  // Ignores a scale of 0 or less.
  void SetScale(double scale);
  void SetPictureFrame(const PreviewFrame& frame);
  void SetBoard(const PreviewBoard& board);
  void SetResult(std::optional<PreviewResult> result);
  void SetShape(int shape);
  void SetBorderStyle(int style);

  // The frame has two appearances by turns; while it is drawn it keeps the first.
  bool SecondLook() const { return secondLook_; }
  void SetSecondLook(bool second);
  // Returns the path of the picture that is probably shown next, "" for none, so that it can be loaded early.
  const std::string& Upcoming() const { return upcoming_; }
  void SetUpcoming(std::string path);
  // Returns whether Upcoming() is shown already, without a frame, while the picture on show is still being cut. Ends
  // when another picture is shown or upcoming.
  bool Glances() const { return glances_; }
  void Glance();
  // Returns the resolution of the picture that is cut in dots per inch, 0 if it is not known.
  int Dpi() const { return dpi_; }
  void SetDpi(int dpi) { dpi_ = dpi; }

  // Notifies the observer, so that what others draw over the picture is redrawn.
  void Refresh() { Notify(); }

  // Calls observer after every change.
  void SetObserver(std::function<void()> observer) { observer_ = std::move(observer); }

 private:
  void Notify();

  std::string path_;
  int showings_ = 0;
  base::Size original_;
  base::Size upright_;
  base::Size picture_;
  double angle_ = 0;
  double scale_ = 1.0;
  PreviewFrame frame_;
  PreviewBoard board_;
  std::optional<PreviewResult> result_;
  int shape_ = 0;
  int borderStyle_ = 0;
  bool secondLook_ = false;
  std::string upcoming_;
  bool glances_ = false;
  int dpi_ = 0;
  std::function<void()> observer_;
};

// --- How the options will change a picture, so that the preview can show it before the cut.

// How a picture is changed before it is cut.
struct CutShape {
  base::Size size;   // it is zoomed to this size
  double angle = 0;  // and then turned by this angle, in degrees counter-clockwise
};
CutShape ShapeBeforeCut(const Program& program, base::Size picture);

// Returns the border around what is cut out of the picture on show, in pixels of that picture; empty if none is added.
PreviewBoard BoardAroundCut(const Program& program, const Preview& preview);

// Returns the result for the picture on show, cut by that geometry; nothing if there is no picture.
std::optional<PreviewResult> ResultOnShow(const Program& program, const CutGeometry& geometry);

// Returns which values decide the cut, and which do not count, if the frame differs from the cut by a pixel or more;
// else "".
std::string NoticeOn(const CutSettings& settings, const PreviewFrame& frame, const PreviewFrame& cut);

}  // namespace quillon::job
