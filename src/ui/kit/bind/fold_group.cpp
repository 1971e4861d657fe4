// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/fold_group.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QVBoxLayout>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

constexpr int kArrow = 8;

QFont BoldFont(const QWidget& widget) {
  QFont font = widget.font();
  font.setBold(true);
  return font;
}

}  // namespace

FoldHeader::FoldHeader(QWidget* parent) : QAbstractButton(parent) {
  setCheckable(true);
  setChecked(true);
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize FoldHeader::sizeHint() const {
  const QFontMetrics metrics(BoldFont(*this));
  return {kArrow + 2 * kGap + metrics.horizontalAdvance(text()), metrics.height() + kGap};
}

// The header is highlighted under the pointer, so it has to be painted again.
void FoldHeader::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void FoldHeader::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void FoldHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  const QColor ink = palette().color(group, QPalette::WindowText);
  if (underMouse() && isEnabled()) {
    QColor glow = ink;
    glow.setAlphaF(0.06f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawRoundedRect(rect(), 4, 4);
  }

  QPen pen(ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  const QPointF centre(kArrow / 2.0 + 4, height() / 2.0);
  QPolygonF arrow;
  // The arrow points down while the group is open and to the right while it is folded.
  if (isChecked()) {
    arrow << centre + QPointF(-4, -2) << centre + QPointF(0, 2) << centre + QPointF(4, -2);
  } else {
    arrow << centre + QPointF(-2, -4) << centre + QPointF(2, 0) << centre + QPointF(-2, 4);
  }
  painter.drawPolyline(arrow);

  painter.setFont(BoldFont(*this));
  const QRect line = rect().adjusted(kArrow + kGap + 4, 0, 0, 0);
  style()->drawItemText(&painter, line, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), text(),
                        QPalette::WindowText);
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(1, 1, -1, -1);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

FoldGroup::FoldGroup(const QString& title, QWidget* parent)
    : QWidget(parent), header_(new FoldHeader(this)), body_(new QWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGap / 2);
  layout->addWidget(header_);
  layout->addWidget(body_);
  SetTitle(title);
  connect(header_, &QAbstractButton::toggled, body_, &QWidget::setVisible);
}

void FoldGroup::SetTitle(const QString& title) {
  header_->setText(title);
  // Screen readers announce this name.
  header_->setAccessibleName(title);
  header_->updateGeometry();
}

}  // namespace quillon::ui
