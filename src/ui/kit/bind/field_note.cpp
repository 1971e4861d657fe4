// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/field_note.h"

#include <QEvent>
#include <QScrollArea>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

constexpr int kSentenceMilliseconds = 8000;
constexpr auto kName = "fieldNote";

// Returns the widget that scrolls with the field, so that the note stays beside it; else the window.
QWidget& HolderOf(const QWidget& field) {
  QWidget* holder = field.window();
  for (QWidget* parent = field.parentWidget(); parent; parent = parent->parentWidget()) {
    const auto* area =
        parent->parentWidget() ? qobject_cast<QScrollArea*>(parent->parentWidget()->parentWidget()) : nullptr;
    if (area && area->widget() == parent) return *parent;
  }
  return *holder;
}

FieldNote* NoteIn(const QWidget& holder) {
  return dynamic_cast<FieldNote*>(holder.findChild<QLabel*>(QString::fromLatin1(kName), Qt::FindDirectChildrenOnly));
}

}  // namespace

FieldNote::FieldNote(QWidget& holder) : QLabel(&holder) {
  setObjectName(QString::fromLatin1(kName));
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAutoFillBackground(true);
  setFrameShape(QFrame::Box);
  setMargin(kGap / 2);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  timer_.setSingleShot(true);
  timer_.setInterval(kSentenceMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] { hide(); });
}

void FieldNote::Show(QWidget& field, const QString& sentence) {
  QWidget& holder = HolderOf(field);
  FieldNote* note = NoteIn(holder);
  if (!note) note = new FieldNote(holder);
  if (note->field_) note->field_->removeEventFilter(note);
  note->field_ = &field;
  field.installEventFilter(note);
  QPalette colours = field.palette();
  colours.setColor(QPalette::Window, colours.color(QPalette::ToolTipBase));
  colours.setColor(QPalette::WindowText, WarningInk(colours));
  note->setPalette(colours);
  note->setText(sentence);
  note->Place(field);
  note->show();
  note->raise();
  note->timer_.start();
}

void FieldNote::Hide(const QWidget& field) {
  FieldNote* note = NoteIn(HolderOf(field));
  if (note && note->field_ == &field) note->hide();
}

void FieldNote::Place(QWidget& field) {
  const QWidget& holder = *parentWidget();
  const int most = holder.width() - 2 * kGap;
  const int wanted = fontMetrics().horizontalAdvance(text()) + 2 * (margin() + frameWidth()) + kGap;
  const int width = qMin(most, wanted);
  const QSize size(width, heightForWidth(width));
  const QPoint below = field.mapTo(&holder, QPoint(0, field.height() + 1));
  const int x = qMax(kGap, qMin(below.x(), holder.width() - kGap - width));
  const bool fits = below.y() + size.height() <= holder.height();
  const int y = fits ? below.y() : qMax(0, below.y() - field.height() - size.height() - 2);
  setGeometry(QRect(QPoint(x, y), size));
}

bool FieldNote::eventFilter(QObject* object, QEvent* event) {
  if (object == field_ && (event->type() == QEvent::Hide || event->type() == QEvent::Move)) hide();
  return QLabel::eventFilter(object, event);
}

}  // namespace quillon::ui
