// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDockWidget>

#include "job/fcutpre.h"
#include "ui/bind/binder.h"

namespace quillon::ui {

class ElidedLabel;
class PreviewCanvas;
class PreviewLoader;

// FCutPre, docked in the main window or floating beside it.
class PreviewDock : public QDockWidget {
 public:
  PreviewDock(job::FCutPre& record, PreviewLoader& loader, QWidget* parent = nullptr);
  ~PreviewDock() override;

  PreviewCanvas& Canvas() const { return *canvas_; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void OnPreview();
  void ShowTitle();
  void ShowDetails();

  job::FCutPre& record_;
  PreviewLoader& loader_;
  Binder binder_;
  int token_;
  int shown_ = -1;
  PreviewCanvas* canvas_;
  QWidget* details_;
  ElidedLabel* file_;
  QLabel* size_;
};

}  // namespace quillon::ui
