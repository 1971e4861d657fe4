// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/timed/timed_window.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/form_grid.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"
#include "ui/regions/region_grid.h"

namespace quillon::ui {

TimedWindow::TimedWindow(regions::FCutTime& record, Binder::Refusal onRefusal)
    : ToolWindow(record, std::move(onRefusal), nullptr, Qt::Window), timed_(record), tray_(ProgramIcon()) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(2 * kGap, 2 * kGap, 2 * kGap, 2 * kGap);
  column->setSpacing(kGap);

  auto* folder = new QHBoxLayout;
  folder->setSpacing(kGap);
  QWidget* path = GetBinder().Make(record.LDir);
  path->setAccessibleName(QStringLiteral("工作目录"));
  folder->addWidget(path, 1);
  folder->addWidget(GetBinder().Make(record.CmdInDir));
  column->addLayout(folder);
  column->addWidget(MakeOptions());
  column->addWidget(GetBinder().Make(record.LNote));
  column->addStretch(1);

  auto* state = new QHBoxLayout;
  state->setSpacing(kGap);
  state->addWidget(GetBinder().Make(record.LFiles), 1);
  state->addWidget(GetBinder().Make(record.LPlace));
  column->addLayout(state);
  auto* ends = new QHBoxLayout;
  ends->setSpacing(kGap);
  ends->addWidget(GetBinder().Make(record.Chback), 1);
  auto* start = static_cast<QPushButton*>(GetBinder().Make(record.CmdDo));
  start->setDefault(true);
  ends->addWidget(start);
  ends->addWidget(GetBinder().Make(record.CmdStop));
  column->addLayout(ends);

  // The icon is visible only in the background; see Follow.
  tray_.setToolTip(Shown(regions::kWatchingText));
  connect(&tray_, &QSystemTrayIcon::activated, this, [this] { ReturnToForeground(); });
}

QWidget* TimedWindow::MakeOptions() {
  auto* group = static_cast<FoldGroup*>(GetBinder().Make(timed_.Frame1));
  auto* column = new QVBoxLayout(group->Body());
  column->setContentsMargins(0, 0, 0, 0);
  auto* plain = new QWidget;
  FormGrid grid(plain, GetBinder());
  grid.Row({}, timed_.CmbType);
  grid.Checks({&timed_.ChFast});
  grid.Checks({&timed_.ChBak});
  grid.Checks({&timed_.ChSizeFilter, &timed_.ChMul});
  column->addWidget(plain);

  auto* small = static_cast<FoldGroup*>(GetBinder().Make(timed_.Frame2));
  FormGrid sizes(small->Body(), GetBinder());
  sizes.Pair({{}, &timed_.TW}, {{}, &timed_.TH});
  sizes.Checks({&timed_.ChBoth});
  column->addWidget(small);
  column->addWidget(MakeRegions());
  return group;
}

QWidget* TimedWindow::MakeRegions() {
  auto* group = static_cast<FoldGroup*>(GetBinder().Make(timed_.Frame3));
  auto* column = new QVBoxLayout(group->Body());
  column->setContentsMargins(2 * kGap, 0, 0, 0);
  column->setSpacing(kGap);
  column->addWidget(new RegionGrid(timed_.MSFlexGrid1, GetBinder()));
  auto* line = new QHBoxLayout;
  line->setSpacing(kGap);
  for (controls::Button* button : {&timed_.CmdAdd, &timed_.CmdInput, &timed_.CmdOut}) {
    line->addWidget(GetBinder().Make(*button));
  }
  column->addLayout(line);
  return group;
}

// Three states: in the tray, minimised, or as visible as the record.
void TimedWindow::Follow() {
  const bool background = timed_.Running() && timed_.Chback.On();
  const bool tray = background && QSystemTrayIcon::isSystemTrayAvailable();
  tray_.setVisible(tray);
  minimised_ = background && !tray;
  if (minimised_) {
    setWindowTitle(Shown(regions::kWatchingText));
    showMinimized();
    return;
  }
  if (timed_.Visible() && isMinimized()) showNormal();
  setVisible(timed_.Visible());
  if (timed_.Visible()) raise();
}

void TimedWindow::changeEvent(QEvent* event) {
  ToolWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && minimised_ && !isMinimized()) {
    // The user restored the window. Its state must not change inside the event that reports it.
    QTimer::singleShot(0, this, [this] { ReturnToForeground(); });
  }
}

void TimedWindow::ReturnToForeground() { timed_.Chback.UserEdit("0"); }

}  // namespace quillon::ui
