// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QWidget>

namespace quillon::ui {

// The line that carries a group's title; a press or the blank key folds the group.
class FoldHeader : public QAbstractButton {
  Q_OBJECT

 public:
  explicit FoldHeader(QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
};

// A titled group that folds down to its title.
class FoldGroup : public QWidget {
  Q_OBJECT

 public:
  explicit FoldGroup(const QString& title, QWidget* parent = nullptr);

  // What folds away; lay out the group's content in it.
  QWidget* Body() const { return body_; }
  FoldHeader* Header() const { return header_; }
  void SetTitle(const QString& title);
  bool Folded() const { return !header_->isChecked(); }
  void SetFolded(bool folded) { header_->setChecked(!folded); }

 private:
  FoldHeader* header_;
  QWidget* body_;
};

}  // namespace quillon::ui
