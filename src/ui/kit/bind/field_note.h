// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>

namespace quillon::ui {

// A sentence under a field that says why its text was refused. A window, or the content of a scroll area, has one at
// most. It goes after eight seconds, or when the field gets another text or is hidden.
class FieldNote : public QLabel {
 public:
  // Shows the sentence under the field, or above it if there is no room below.
  static void Show(QWidget& field, const QString& sentence);
  // Hides the note if it belongs to that field.
  static void Hide(const QWidget& field);

 private:
  explicit FieldNote(QWidget& holder);
  void Place(QWidget& field);
  bool eventFilter(QObject* object, QEvent* event) override;

  QPointer<QWidget> field_;
  QTimer timer_;
};

}  // namespace quillon::ui
