// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include "job/windows/form1.h"

class QLabel;
class QPushButton;

namespace quillon::ui {

// One line below the preview that says which values count if the frame of the panel is not what is cut. Its buttons
// only set controls of the main window.
class FrameNotice : public QFrame {
 public:
  explicit FrameNotice(job::Form1& form, QWidget* parent = nullptr);

  // Hides the line if the text is empty.
  void Show(const std::string& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  job::Form1& form_;
  QLabel* text_;
  QPushButton* percent_;
  QPushButton* framed_;
};

}  // namespace quillon::ui
