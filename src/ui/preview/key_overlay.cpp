// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/key_overlay.h"

#include <QEvent>
#include <QPainter>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

struct KeyLine {
  const char* key;
  const char* action;
};

// The keys that FrameKeys and FrameMouse handle, in the order of their use.
constexpr KeyLine kLines[] = {
    {"空格 / Ctrl", "下一张"},
    {"Z", "本图不裁剪"},
    {"A", "逆转 90 度"},
    {"Q", "顺转 90 度"},
    {"Shift", "本图扩边"},
    {"方向键", "移动裁剪框 1 像素"},
    {"Shift+方向键", "移动 10 像素"},
    {"Alt+方向键", "改变大小"},
    {"拖动", "画框、移动、拉边角"},
    {"滚轮", "缩放"},
    {"中键拖动", "移动图片"},
    {"F1", "显示或收起本说明"},
};

}  // namespace

KeyOverlay::KeyOverlay(QWidget& canvas) : QWidget(&canvas) {
  setObjectName(QStringLiteral("keyOverlay"));
  setAccessibleName(QStringLiteral("快捷键"));
  hide();
  canvas.installEventFilter(this);
}

void KeyOverlay::Toggle() {
  resize(parentWidget()->size());
  setVisible(isHidden());
  raise();
}

bool KeyOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize) resize(parentWidget()->size());
  return QWidget::eventFilter(watched, event);
}

void KeyOverlay::mousePressEvent(QMouseEvent*) { hide(); }

void KeyOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), QColor(0, 0, 0, 120));
  const QFontMetrics metrics(painter.font());
  const int line = metrics.height() + kGap;
  // Both columns are as wide as their longest entry.
  const int keys = metrics.horizontalAdvance(QStringLiteral("Shift+方向键")) + 3 * kGap;
  const int words = metrics.horizontalAdvance(QStringLiteral("画框、移动、拉边角")) + 2 * kGap;
  QRect card(0, 0, keys + words + 2 * kGap, line * (int(std::size(kLines)) + 1) + 3 * kGap);
  card.moveCenter(rect().center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(24, 26, 30, 235));
  painter.drawRoundedRect(card, 10, 10);
  QFont bold = painter.font();
  bold.setBold(true);
  painter.setPen(Qt::white);
  painter.setFont(bold);
  int y = card.top() + 2 * kGap;
  painter.drawText(QRect(card.left() + 2 * kGap, y, card.width(), line), Qt::AlignVCenter, QStringLiteral("快捷键"));
  for (const KeyLine& one : kLines) {
    y += line;
    painter.setFont(bold);
    painter.setPen(QColor(0x8c, 0xb8, 0xff));
    painter.drawText(QRect(card.left() + 2 * kGap, y, keys, line), Qt::AlignVCenter, QString::fromUtf8(one.key));
    painter.setFont(font());
    painter.setPen(QColor(235, 235, 235));
    painter.drawText(QRect(card.left() + 2 * kGap + keys, y, words, line), Qt::AlignVCenter,
                     QString::fromUtf8(one.action));
  }
}

}  // namespace quillon::ui
