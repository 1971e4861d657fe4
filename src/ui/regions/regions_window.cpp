// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/regions/regions_window.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/kit/theme/theme.h"
#include "ui/regions/region_grid.h"

namespace quillon::ui {

RegionsWindow::RegionsWindow(regions::FMultCut& record, Binder::Refusal onRefusal, QWidget* parent)
    : ToolWindow(record, std::move(onRefusal), parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(2 * kGap, 2 * kGap, 2 * kGap, 2 * kGap);
  column->setSpacing(kGap);
  column->addWidget(GetBinder().Make(record.List1));
  column->addWidget(new RegionGrid(record.MSFlexGrid1, GetBinder()), 1);

  // Regions are edited in the preview, which this window does not show.
  auto* hint = new QLabel(QStringLiteral("预览中带编号的框可以拖动；双击一行删除，右键清空"));
  hint->setWordWrap(true);
  QPalette faint = hint->palette();
  faint.setColor(QPalette::WindowText, FaintInk(faint));
  hint->setPalette(faint);
  column->addWidget(hint);

  auto* lists = new QHBoxLayout;
  lists->setSpacing(kGap);
  for (controls::Button* button : {&record.CmdAdd, &record.CmdInput, &record.CmdOut}) {
    lists->addWidget(GetBinder().Make(*button));
  }
  column->addLayout(lists);

  auto* ends = new QHBoxLayout;
  ends->setSpacing(kGap);
  ends->addWidget(GetBinder().Make(record.CmdUpdate));
  ends->addStretch(1);
  auto* cut = static_cast<QPushButton*>(GetBinder().Make(record.CmdOk));
  cut->setDefault(true);
  ends->addWidget(cut);
  ends->addWidget(GetBinder().Make(record.CmdCancel));
  column->addSpacing(kGap);
  column->addLayout(ends);
}

}  // namespace quillon::ui
