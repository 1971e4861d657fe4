// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/outcome_watch.h"

#include <algorithm>
#include <utility>

namespace quillon::ui {
namespace {

constexpr int kSettleMilliseconds = 150;
constexpr std::size_t kPortion = 500;       // rows; well below a millisecond of work
constexpr std::size_t kPagesPortion = 200;  // files

}  // namespace

OutcomeWatch::OutcomeWatch(job::Program& program, job::ForeseenList& foreseen, QObject* parent)
    : QObject(parent), program_(program), foreseen_(foreseen) {
  thread_.setMaxThreadCount(1);
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleMilliseconds);
  connect(&settle_, &QTimer::timeout, this, [this] { Restart(); });
  connect(&portion_, &QTimer::timeout, this, [this] { Count(); });
  // The handler of a control runs after its observers, so its couplings are in place when the timer ends.
  token_ = program_.form1.Observe([this](controls::Control& control, controls::Aspect aspect) {
    const bool parameter = &control != &program_.form1.MSF && &control != &program_.form1.LStatus;
    if (parameter && aspect == controls::Aspect::Value) settle_.start();
  });
  optionsToken_ = program_.fBaseOpt.Observe(
      [this](controls::Control&, controls::Aspect aspect) {
        if (aspect == controls::Aspect::Value) settle_.start();
      },
      [this](controls::Window&) { settle_.start(); });
  settle_.start();
}

// Waits for the file whose pages are counted.
OutcomeWatch::~OutcomeWatch() {
  ++turn_;
  thread_.waitForDone();
  program_.form1.Forget(token_);
  program_.fBaseOpt.Forget(optionsToken_);
}

void OutcomeWatch::Follow(const QAbstractItemModel& rows) {
  connect(&rows, &QAbstractItemModel::rowsInserted, this, [this] { settle_.start(); });
  connect(&rows, &QAbstractItemModel::rowsRemoved, this, [this] { settle_.start(); });
  connect(&rows, &QAbstractItemModel::modelReset, this, [this] { settle_.start(); });
}

void OutcomeWatch::SetReceivers(std::function<void()> restarted, OnCounted counted) {
  restarted_ = std::move(restarted);
  counted_ = std::move(counted);
}

void OutcomeWatch::Restart() {
  foreseen_.Restart();
  if (restarted_) restarted_();
  portion_.start(0);
  CountPages();
}

void OutcomeWatch::CountPages() {
  const int turn = ++turn_;
  std::vector<std::string> paths = foreseen_.Unread();
  if (paths.empty()) return;
  thread_.start([this, paths = std::move(paths), turn] { FindPages(paths, turn); });
}

// What was counted before another count starts is handed over too, so that no file is read twice.
void OutcomeWatch::FindPages(const std::vector<std::string>& paths, int turn) {
  PagesByPath found;
  const auto handOver = [&] {
    if (found.empty()) return;
    QMetaObject::invokeMethod(
        this, [this, pages = std::move(found)] { Accept(pages); }, Qt::QueuedConnection);
    found.clear();
  };
  for (const std::string& path : paths) {
    if (turn != turn_) break;
    job::PagesOfFile pages;
    // A file that cannot be read is left to the run, which reports it.
    if (job::FindPages(program_.host.files, path, pages)) found[path] = pages;
    if (found.size() >= kPagesPortion) handOver();
  }
  handOver();
}

void OutcomeWatch::Accept(const PagesByPath& found) {
  foreseen_.Learn(found);
  const bool several = std::any_of(found.begin(), found.end(), [](const auto& file) { return file.second.Several(); });
  if (!several) return;
  foreseen_.CountAnew();
  if (restarted_) restarted_();
  portion_.start(0);
}

void OutcomeWatch::Count() {
  if (!foreseen_.CountMore(kPortion)) return;
  portion_.stop();
  if (counted_) counted_(foreseen_.Counted(), foreseen_.WithoutFile());
}

}  // namespace quillon::ui
