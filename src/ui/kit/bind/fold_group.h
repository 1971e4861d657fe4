// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QWidget>

namespace quillon::ui {

// The title line of a group. It is checked while the group is open; a click or the space key toggles it.
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

// A titled group that can be folded to its title. It starts open.
class FoldGroup : public QWidget {
  Q_OBJECT

 public:
  explicit FoldGroup(const QString& title, QWidget* parent = nullptr);

  // Returns the part that is hidden while the group is folded. The caller sets its layout.
  QWidget* Body() const { return body_; }
  FoldHeader* Header() const { return header_; }
  void SetTitle(const QString& title);

 private:
  FoldHeader* header_;
  QWidget* body_;
};

}  // namespace quillon::ui
