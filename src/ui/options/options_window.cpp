// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/options/options_window.h"

#include <QCloseEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/form_grid.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {

OptionsWindow::OptionsWindow(job::FBaseOpt& record, Binder::Refusal onRefusal, QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      record_(record),
      binder_(record, std::move(onRefusal)) {
  setObjectName(Shown(record.Name()));
  setWindowTitle(Shown(record.Title()));

  auto* content = new QWidget;
  auto* columns = new QHBoxLayout(content);
  columns->setContentsMargins(kGap, kGap, 2 * kGap, kGap);
  columns->setSpacing(3 * kGap);
  // Two columns, so that all groups are visible at once on a usual screen.
  for (auto add : {&OptionsWindow::AddLeft, &OptionsWindow::AddRight}) {
    auto* column = new QVBoxLayout;
    column->setSpacing(kGap);
    columns->addLayout(column, 1);
    (this->*add)(column);
    column->addStretch(1);
  }

  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(content);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroll);
  content->layout()->activate();
  // On a small screen the content scrolls.
  const QSize room = screen()->availableSize() * 9 / 10;
  resize(content->sizeHint().boundedTo(room));
}

QWidget* OptionsWindow::AddGroup(QVBoxLayout* column, controls::Frame& frame) {
  auto* group = static_cast<FoldGroup*>(binder_.Make(frame));
  column->addWidget(group);
  return group->Body();
}

void OptionsWindow::AddLeft(QVBoxLayout* column) {
  FormGrid rotate(AddGroup(column, record_.FrameRotate), binder_);
  rotate.Row({}, record_.CmbRotate);
  rotate.Row({}, record_.TAngle);
  rotate.Checks({&record_.ChRotateCut, &record_.ChRecover});

  FormGrid zoom(AddGroup(column, record_.FrameZoom), binder_);
  zoom.Row({}, record_.CmbZoom);
  zoom.Checks({&record_.ChZoomAndCut, &record_.ChCutAndZoom});

  FormGrid size(AddGroup(column, record_.FrameSize), binder_);
  size.Checks({&record_.ChAutoCenter, &record_.ChMamal, &record_.ChMulCut, &record_.ChKeepCut});
  size.Pair({{}, &record_.TSmalS[3]}, {{}, &record_.TSmalS[2]});
  size.Checks({&record_.ChSplit});
  size.Pair({{}, &record_.TSmalS[4]}, {{}, &record_.TSmalS[5]});
  size.Checks({&record_.ChFilter});
  size.Pair({{}, &record_.TSmalS[0]}, {{}, &record_.TSmalS[1]});
}

void OptionsWindow::AddRight(QVBoxLayout* column) {
  FormGrid board(AddGroup(column, record_.FrameBoard), binder_);
  board.Checks({&record_.ChAddBoard, &record_.ChFrmOnly});
  board.Pair({{}, &record_.TBoard[0]}, {{}, &record_.TBoard[2]});
  board.Pair({{}, &record_.TBoard[1]}, {{}, &record_.TBoard[3]});
  board.Row(QStringLiteral("边框颜色："), record_.PBoardColor);

  FormGrid colour(AddGroup(column, record_.FrameColour), binder_);
  colour.Checks({&record_.ChToGray, &record_.ChToWB, &record_.ChInvert, &record_.ChToCMYK});
  colour.Row(QStringLiteral("CMYK："), record_.CmbCMYK);
  colour.Checks({&record_.ChClsWhite, &record_.ChClsBlack});

  FormGrid output(AddGroup(column, record_.FrameOutput), binder_);
  output.Row({}, record_.CmbExtCase);
  output.Row({}, record_.CmbDPI);
  output.Checks({&record_.ChKeepExif, &record_.ChBig, &record_.ChOmitFolds});
}

// Closing is a request to the record; the main window hides this one when the record is hidden.
void OptionsWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void OptionsWindow::reject() {
  binder_.CommitTyped();
  record_.Close();
}

}  // namespace quillon::ui
