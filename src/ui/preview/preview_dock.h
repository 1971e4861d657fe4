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
class KeyOverlay;
class PreviewCanvas;
class PreviewLoader;

// FCutPre, docked in the main window or floating beside it. While a batch waits for the frame it floats, large.
class PreviewDock : public QDockWidget {
 public:
  PreviewDock(parts::Parts& parts, PreviewLoader& loader, QWidget* parent = nullptr);
  ~PreviewDock() override;

  PreviewCanvas& Canvas() const { return *canvas_; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* MakeView();
  QWidget* MakeButtons();
  QWidget* MakeZoom();
  QWidget* MakeDetails();
  void ConnectHands();
  void OnPreview();
  void ShowGlance();
  void ShowNewPicture();
  void ShowRegions();
  void ShowView();
  void ShowTitle();
  void ShowDetails();
  void ShowStep();
  void Float();
  void KeepPlace();
  void AskForDetail(int side);

  job::Program& program_;
  job::FCutPre& record_;
  regions::CutFrame& frame_;
  regions::FMultCut& regions_;
  PreviewLoader& loader_;
  Binder binder_;
  int token_;
  int regionsToken_;
  int shown_ = -1;
  int limit_ = 0;  // of the picture that was asked for
  bool glances_ = false;
  bool floated_ = false;
  QTimer blink_;
  PreviewCanvas* canvas_;
  KeyOverlay* keys_;
  QWidget* buttons_ = nullptr;
  ElidedLabel* file_;
  QLabel* size_;
  QLabel* result_;
  QLabel* zoom_;
};

}  // namespace quillon::ui
