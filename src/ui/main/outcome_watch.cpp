// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/outcome_watch.h"

namespace quillon::ui {
namespace {

constexpr int kSettleMilliseconds = 150;
constexpr std::size_t kPortion = 500;  // rows; well below a millisecond of work

}  // namespace

OutcomeWatch::OutcomeWatch(job::Program& program, job::ForeseenList& foreseen, QObject* parent)
    : QObject(parent), program_(program), foreseen_(foreseen) {
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

OutcomeWatch::~OutcomeWatch() {
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
}

void OutcomeWatch::Count() {
  if (!foreseen_.CountMore(kPortion)) return;
  portion_.stop();
  if (counted_) counted_(foreseen_.Counted(), foreseen_.WithoutFile());
}

}  // namespace quillon::ui
