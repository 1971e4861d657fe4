// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/run_monitor.h"

#include <algorithm>
#include <cmath>

#include "base/path_text.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

constexpr int kReportMilliseconds = 100;
constexpr double kSettled = 0.5;  // seconds; before that the rate fluctuates too much to be shown

}  // namespace

RunMonitor::RunMonitor(host::Clock& clock, OnProgress onProgress, OnEnded onEnded, QObject* parent)
    : QObject(parent), clock_(clock), onProgress_(std::move(onProgress)), onEnded_(std::move(onEnded)) {
  timer_.setSingleShot(true);
  timer_.setInterval(kReportMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] { onProgress_(Figures()); });
}

void RunMonitor::RunStarted(std::size_t planned) {
  counted_ = {};
  counted_.running = true;
  counted_.planned = planned;
  lastSource_.clear();
  begun_ = clock_.Seconds();
  onProgress_(Figures());
}

void RunMonitor::RunPlanned(std::size_t planned) {
  counted_.planned = planned;
  ScheduleReport();
}

void RunMonitor::FileDone(const job::FileResult& file) {
  if (!file.reached) return;
  ++counted_.done;
  if (file.result == job::Result::None) ++counted_.failed;
  lastSource_ = file.source;
  ScheduleReport();
}

void RunMonitor::FileLost(const job::FileResult&, const std::string&) {
  ++counted_.failed;
  ScheduleReport();
}

void RunMonitor::RunEnded(const job::RunTotals& totals) {
  // A report that is still pending would show the progress of a run that is over.
  timer_.stop();
  counted_.running = false;
  onProgress_(Figures());
  onEnded_(totals);
}

void RunMonitor::ScheduleReport() {
  if (!timer_.isActive()) timer_.start();
}

RunFigures RunMonitor::Figures() const {
  RunFigures figures = counted_;
  const base::PathParts parts = base::SplitPath(lastSource_);
  figures.file = Shown(base::JoinPath("", parts.name, parts.extension));
  const double elapsed = clock_.Seconds() - begun_;
  if (figures.running && figures.done > 0 && elapsed >= kSettled) {
    figures.rate = static_cast<double>(figures.done) / elapsed;
    const std::size_t left = figures.planned > figures.done ? figures.planned - figures.done : 0;
    figures.secondsLeft = static_cast<double>(left) / figures.rate;
  }
  return figures;
}

QString CountText(const RunFigures& figures) {
  const bool counting = figures.running && figures.planned == 0;
  return counting ? QStringLiteral("已处理 %1").arg(figures.done) : QString();
}

QString RateText(double rate) {
  if (rate <= 0) return {};
  return QStringLiteral("%1 张/秒").arg(rate, 0, 'f', rate < 10 ? 1 : 0);
}

QString TimeLeftText(double seconds) {
  if (seconds <= 0) return {};
  const auto whole = static_cast<long long>(std::ceil(seconds));
  if (whole < 60) return QStringLiteral("剩余 %1 秒").arg(whole);
  const bool hours = whole >= 3600;
  const long long first = hours ? whole / 3600 : whole / 60;
  const long long second = hours ? whole % 3600 / 60 : whole % 60;
  const QString shape = hours ? QStringLiteral("剩余 %1 小时 %2 分") : QStringLiteral("剩余 %1 分 %2 秒");
  return shape.arg(first).arg(second, 2, 10, QLatin1Char('0'));
}

QString SummaryText(const job::RunTotals& totals) {
  QString text = totals.stopped ? QStringLiteral("已终止：") : QStringLiteral("完成：");
  text += QStringLiteral("写出 %1").arg(totals.written);
  if (totals.none > 0) text += QStringLiteral("，未写出 %1").arg(totals.none);
  if (totals.skipped > 0) text += QStringLiteral("，跳过 %1").arg(totals.skipped);
  return text + QStringLiteral("，用时 %1 秒").arg(totals.seconds, 0, 'f', 1);
}

}  // namespace quillon::ui
