// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/parameter_panel.h"

#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/form_grid.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

// Width of the panel in line heights, so that it follows the font of the desktop.
constexpr int kPanelLines = 20;

}  // namespace

ParameterPanel::ParameterPanel(job::Form1& form, Binder& binder, QWidget* parent)
    : QScrollArea(parent), form_(form), binder_(binder) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);

  auto* panel = new QWidget;
  auto* groups = new QVBoxLayout(panel);
  groups->setContentsMargins(kGap, kGap, kGap, kGap);
  groups->setSpacing(kGap);
  setWidget(panel);
  AddFolders();
  AddMode();
  AddMargins();
  AddFixedCut();
  AddOutput();
  AddRest();
  groups->addStretch(1);
  // The frame of the record disables all groups during a run.
  binder_.Join(form_.Frame1, panel);
}

QSize ParameterPanel::minimumSizeHint() const {
  return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
          QScrollArea::minimumSizeHint().height()};
}

QSize ParameterPanel::sizeHint() const {
  const int width = qMax(minimumSizeHint().width(), kPanelLines * fontMetrics().height());
  return {width, 2 * width};
}

QWidget* ParameterPanel::AddGroup(const QString& title) {
  auto* group = new FoldGroup(title);
  widget()->layout()->addWidget(group);
  return group->Body();
}

QWidget* ParameterPanel::Shortcut(controls::Menu& menu, const QString& icon, const QString& name) {
  auto* button = new QToolButton;
  QAction* action = binder_.MakeButtonAction(menu, button);
  action->setIcon(LineIcon(icon));
  button->setDefaultAction(action);
  button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setToolTip(name);
  button->setAccessibleName(name);
  return button;
}

void ParameterPanel::AddFolders() {
  FormGrid form(AddGroup(QStringLiteral("目录")), binder_);
  form.Row(QStringLiteral("输入目录："), form_.LInDir,
           {Shortcut(form_.MenuInputDir, QStringLiteral("browse"), QStringLiteral("选择输入目录"))});
  form.Row(QStringLiteral("输出目录："), form_.LOutDir,
           {Shortcut(form_.MenuOutDir, QStringLiteral("browse"), QStringLiteral("选择输出目录"))});
  form.Checks({&form_.ChSubFold, &form_.ChKeepDir, &form_.ChOver, &form_.ChBack});
}

void ParameterPanel::AddMode() {
  FormGrid form(AddGroup(QStringLiteral("裁剪方式")), binder_);
  form.Row({}, form_.CmbCutMode);
  form.Row({}, form_.CmbCutStyle);
  form.Checks({&form_.ChBig, &form_.ChLarge});
}

void ParameterPanel::AddMargins() {
  auto* group = static_cast<FoldGroup*>(binder_.Make(form_.Frame2));
  widget()->layout()->addWidget(group);
  FormGrid form(group->Body(), binder_);
  form.Pair({{}, &form_.TCutValue[0]}, {{}, &form_.TCutValue[2]});
  form.Pair({{}, &form_.TCutValue[1]}, {{}, &form_.TCutValue[3]});
  form.Checks({&form_.ChCutA, &form_.ChAsFramed});
}

void ParameterPanel::AddFixedCut() {
  FormGrid form(AddGroup(QStringLiteral("固定裁剪")), binder_);
  form.Checks({&form_.ChFixCut, &form_.ChAutoCenter});
  form.Row({}, form_.CmbKeepCut);
  form.Pair({{}, &form_.TFixWH[0]}, {{}, &form_.TFixWH[1]});
  form.Checks({&form_.ChExact, &form_.ChExactPad});
  form.Row({}, form_.CmbAnchor);
  form.Checks({&form_.ChFull, &form_.ChAutoZoom, &form_.ChAddToSize, &form_.ChMode1});
}

void ParameterPanel::AddOutput() {
  FormGrid form(AddGroup(QStringLiteral("输出")), binder_);
  form.Row({}, form_.CmbOutType);
  form.Row({}, form_.CmbDPI);
  form.CheckAndField(form_.ChJpgComp, form_.TQuality);
  form.Checks({&form_.ChCutAndArray});
}

void ParameterPanel::AddRest() {
  std::vector<controls::Control*> rest;
  for (controls::Control* control : form_.Controls()) {
    const controls::Kind kind = control->GetKind();
    const bool elsewhere = control == &form_.Frame1 || control == &form_.MSF || control == &form_.LStatus;
    if (!binder_.Has(*control) && kind != controls::Kind::Menu && !elsewhere) rest.push_back(control);
  }
  if (rest.empty()) return;
  FormGrid form(AddGroup(QStringLiteral("其他")), binder_);
  for (controls::Control* control : rest) {
    // A check box has a caption of its own; other controls need a label.
    const bool captioned = control->GetKind() == controls::Kind::CheckBox;
    if (captioned) {
      form.Checks({control});
    } else {
      form.Row({}, *control);
    }
  }
}

}  // namespace quillon::ui
