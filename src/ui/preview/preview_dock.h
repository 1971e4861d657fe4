// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDockWidget>
#include <QTimer>

#include "parts/parts.h"
#include "ui/kit/bind/binder.h"

class QLabel;

namespace quillon::ui {

class ElidedLabel;
class FrameNotice;
class KeyOverlay;
class PreviewCanvas;
class PreviewLoader;

// FCutPre as a dock of the main window, or floating beside it. While a batch waits for the frame, it floats as a large
// window.
// It connects the canvas with its input (FrameMouse, FrameKeys), the records and the loader.
class PreviewDock : public QDockWidget {
 public:
  PreviewDock(parts::Parts& parts, PreviewLoader& loader, QWidget* parent = nullptr);
  ~PreviewDock() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* MakeView();
  QWidget* MakeButtons();
  QWidget* MakeZoom();
  QWidget* MakeDetails();
  void ConnectInput();
  // Called when the preview record changes.
  void OnPreview();
  void ShowGlance();
  void ShowNewPicture();
  // Shows which values count if the frame is not what is cut, unless a run works on its own. Does nothing during a
  // drag: the picture must not move below the pointer.
  void ShowNotice();
  void ShowRegions();
  void ShowView();
  void ShowTitle();
  void ShowDetails();
  // Floats or docks the window as the manual step starts or ends.
  void ShowStep();
  void PlaceFloating();
  void SavePlace();
  void LoadDetail(int side);

  job::Program& program_;
  job::FCutPre& record_;
  regions::CutFrame& frame_;
  regions::FMultCut& regions_;
  PreviewLoader& loader_;
  Binder binder_;
  int token_;
  int regionsToken_;
  int shown_ = -1;  // number of the showing that is on the canvas; see job::Preview
  int limit_ = 0;   // longest side of the picture that was requested
  bool glances_ = false;
  bool floated_ = false;  // floating because of the manual step
  QTimer blink_;          // drives the blinking outline of the frame
  PreviewCanvas* canvas_;
  KeyOverlay* keys_;
  FrameNotice* notice_;
  QWidget* buttons_ = nullptr;
  ElidedLabel* file_;
  QLabel* size_;
  QLabel* result_;
  QLabel* zoom_;
};

}  // namespace quillon::ui
