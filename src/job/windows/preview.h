// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "base/colour.h"
#include "base/rect.h"

namespace quillon::job {

// The frame over the preview. It may reach outside the picture, and its sides may be negative.
struct PreviewFrame {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  bool operator==(const PreviewFrame&) const = default;
};

// The border that a cut gets, drawn around the frame; in pixels of the picture, which a scale may make broken.
struct PreviewBoard {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  base::Colour colour = base::kWhite;
  bool operator==(const PreviewBoard&) const = default;
  bool Empty() const { return left <= 0 && top <= 0 && right <= 0 && bottom <= 0; }
};

// What the preview shows: a picture, the scale it is shown at, and the cut frame that follows the parameters. The frame
// is kept in pixels of the picture itself, so that no scale of the window ever moves it.
class Preview {
 public:
  Preview() = default;

  // The picture's own size, before it is zoomed and turned for the cut.
  base::Size Original() const { return original_; }
  // The size it is shown for, turned where it is turned; the shown size is that times Scale().
  base::Size Picture() const { return picture_; }
  const std::string& Path() const { return path_; }
  // Grows each time a picture is shown, be it the same path again.
  int Showings() const { return showings_; }
  // That size before the picture is turned.
  base::Size Upright() const { return upright_; }
  // How the picture is turned before it is shown, degrees counter-clockwise, on white.
  double Angle() const { return angle_; }
  double Scale() const { return scale_; }
  double ShownWidth() const { return picture_.width * scale_; }
  double ShownHeight() const { return picture_.height * scale_; }
  // In pixels of the shown picture.
  PreviewFrame Frame() const;
  // In pixels of the picture itself.
  const PreviewFrame& PictureFrame() const { return frame_; }
  const PreviewBoard& Board() const { return board_; }
  int Shape() const { return shape_; }              // as CmbCutStyle
  int BorderStyle() const { return borderStyle_; }  // 15 with a fixed cut, else 0

  // path is empty where there is only an area to draw the frame in.
  void ShowPicture(std::string path, base::Size picture);
  // The picture on show takes another size before it is turned by angle; it is the same picture.
  void Reshape(base::Size picture, double angle);
  // A scale of 0 or less is ignored.
  void SetScale(double scale);
  void SetFrame(const PreviewFrame& shown);
  void SetPictureFrame(const PreviewFrame& frame);
  void SetBoard(const PreviewBoard& board);
  void SetShape(int shape);
  void SetBorderStyle(int style);

  // The two looks that the frame has by turns; a frame that is drawn keeps the first.
  bool SecondLook() const { return secondLook_; }
  void SetSecondLook(bool second);
  // A picture that is likely to be shown next, "" for none; to be fetched early.
  const std::string& Upcoming() const { return upcoming_; }
  void SetUpcoming(std::string path);
  // Whether that is to be seen already, without a frame, while the picture on show is still being cut. Ends when
  // another picture is shown or upcoming.
  bool Glances() const { return glances_; }
  void Glance();
  // Dots per inch of the picture that the cut is taken from, 0 where that is not known.
  int Dpi() const { return dpi_; }
  void SetDpi(int dpi) { dpi_ = dpi; }

  // Has it shown anew, for what others draw over it.
  void Refresh() { Notify(); }

  // Told of every change.
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
  int shape_ = 0;
  int borderStyle_ = 0;
  bool secondLook_ = false;
  std::string upcoming_;
  bool glances_ = false;
  int dpi_ = 0;
  std::function<void()> observer_;
};

}  // namespace quillon::job
