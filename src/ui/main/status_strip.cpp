// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/status_strip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

#include "ui/kit/bind/elided_label.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

constexpr int kProgressWidth = 20 * kGap;
constexpr int kSentenceMilliseconds = 8000;

}  // namespace

StatusStrip::StatusStrip(job::Form1& form, Binder& binder, QWidget* parent)
    : QStatusBar(parent),
      message_(new ElidedLabel),
      notice_(new ElidedLabel),
      progress_(new QProgressBar),
      rate_(new QLabel),
      timeLeft_(new QLabel) {
  message_->setObjectName(QStringLiteral("statusWord"));
  progress_->setObjectName(QStringLiteral("progress"));
  progress_->setAccessibleName(QStringLiteral("进度"));
  progress_->setFixedWidth(kProgressWidth);
  progress_->setFormat(QStringLiteral("%v / %m"));
  progress_->setAlignment(Qt::AlignCenter);
  rate_->setObjectName(QStringLiteral("rate"));
  timeLeft_->setObjectName(QStringLiteral("timeLeft"));
  setContentsMargins(kGap / 2, 0, kGap / 2, 0);
  addWidget(binder.Make(form.LStatus), 1);
  addWidget(message_, 1);
  addWidget(notice_, 1);
  addPermanentWidget(rate_);
  addPermanentWidget(timeLeft_);
  addPermanentWidget(progress_);
  notice_->setObjectName(QStringLiteral("notice"));
  notice_->hide();
  noticeEnds_.setSingleShot(true);
  noticeEnds_.setInterval(kSentenceMilliseconds);
  connect(&noticeEnds_, &QTimer::timeout, notice_, &QWidget::hide);
  ShowRun({});
}

void StatusStrip::ShowRun(const RunFigures& figures) {
  running_ = figures.running;
  progress_->setVisible(figures.running);
  if (figures.running) {
    active_ = false;
    progress_->setTextVisible(true);
    // A range of 0 to 0, while the number of files is unknown, shows a moving bar.
    progress_->setRange(0, static_cast<int>(figures.planned));
    progress_->setValue(static_cast<int>(figures.done));
    message_->setText(figures.file);
  }
  const QString count = CountText(figures);
  const QString rate = RateText(figures.rate);
  rate_->setText(count.isEmpty() || rate.isEmpty() ? count + rate : count + QStringLiteral("  ") + rate);
  rate_->setVisible(!rate_->text().isEmpty());
  timeLeft_->setText(TimeLeftText(figures.secondsLeft));
  timeLeft_->setVisible(!timeLeft_->text().isEmpty());
}

void StatusStrip::ShowSummary(const job::RunTotals& totals) {
  progress_->setVisible(totals.stopped && progress_->maximum() > 0);
  message_->setText(SummaryText(totals));
}

void StatusStrip::ShowActivity(const QString& text) {
  if (running_ || (text.isEmpty() && !active_)) return;
  active_ = !text.isEmpty();
  progress_->setVisible(active_);
  if (active_) {
    progress_->setTextVisible(false);
    progress_->setRange(0, 0);
  }
  message_->setText(text);
}

void StatusStrip::ShowNotice(const QString& text) {
  notice_->setText(text);
  notice_->show();
  noticeEnds_.start();
}

}  // namespace quillon::ui
