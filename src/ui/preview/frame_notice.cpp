// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_notice.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

const QColor kAmber(0xf2, 0xa6, 0x1d, 70);  // transparent, so that it suits light and dark

QPushButton* MakeButton(const QString& name, const QString& text, const QString& tip) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  button->setToolTip(tip);
  // The focus stays at the picture, so that its keys go on working.
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

}  // namespace

FrameNotice::FrameNotice(job::Form1& form, QWidget* parent)
    : QFrame(parent),
      form_(form),
      text_(new QLabel),
      percent_(MakeButton(QStringLiteral("noticePercent"), QStringLiteral("改用百分比"),
                          QStringLiteral("去掉“绝对裁剪”的勾，框不动，四边改按百分比裁"))),
      framed_(MakeButton(QStringLiteral("noticeFramed"), QStringLiteral("按画的框裁"),
                         QStringLiteral("勾上“按预览框裁剪”"))) {
  setObjectName(QStringLiteral("frameNotice"));
  text_->setObjectName(QStringLiteral("frameNoticeText"));
  text_->setWordWrap(true);
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(kGap, kGap / 2, kGap, kGap / 2);
  lines->setSpacing(kGap / 2);
  lines->addWidget(text_);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kGap);
  buttons->addStretch(1);
  buttons->addWidget(percent_);
  buttons->addWidget(framed_);
  lines->addLayout(buttons);
  // A run that waits for the frame disables the panel, but the decision about this picture is the user's.
  connect(percent_, &QPushButton::clicked, this, [this] { form_.ChCutA.Set(false); });
  connect(framed_, &QPushButton::clicked, this, [this] { form_.ChAsFramed.Set(true); });
  hide();
}

void FrameNotice::Show(const std::string& text) {
  text_->setText(Shown(text));
  percent_->setVisible(form_.CanUsePercent());
  setVisible(!text.empty());
}

void FrameNotice::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(rect(), kAmber);
  QFrame::paintEvent(event);
}

}  // namespace quillon::ui
