// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/record_window.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>
#include <cstddef>

#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/form_grid.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

using controls::Kind;

// Returns whether the widget of such a control shows its caption itself, or is one.
bool CaptionIsInside(Kind kind) { return kind == Kind::CheckBox || kind == Kind::Option || kind == Kind::Label; }

bool FillsRow(Kind kind) {
  switch (kind) {
    case Kind::Frame:
    case Kind::Button:
    case Kind::Menu:
    case Kind::Grid:
      return false;
    default:
      return true;
  }
}

}  // namespace

RecordWindow::RecordWindow(controls::Window& record, Binder::Refusal onRefusal, QWidget* parent)
    : ToolWindow(record, std::move(onRefusal), parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      record_(record) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kGap, 2 * kGap, 2 * kGap, 2 * kGap);
  column->setSpacing(kGap);
  auto* top = new QWidget;
  AddRows(top, nullptr);
  column->addWidget(top);
  AddGroups(column);
  column->addStretch(1);
  AddButtons(column);
}

void RecordWindow::AddRows(QWidget* body, const controls::Control* parent) {
  FormGrid grid(body, GetBinder());
  controls::Control* before = nullptr;  // a check box that waits for a second one
  const auto flush = [&] {
    if (before) grid.Checks({before});
    before = nullptr;
  };
  for (controls::Control* control : record_.Controls()) {
    if (control->Parent() != parent || !FillsRow(control->GetKind())) continue;
    if (control->GetKind() == Kind::CheckBox && before) {
      grid.Checks({before, control});
      before = nullptr;
    } else if (control->GetKind() == Kind::CheckBox) {
      before = control;
    } else {
      flush();
      if (CaptionIsInside(control->GetKind())) {
        grid.Checks({control});
      } else {
        grid.Row({}, *control);
      }
    }
  }
  flush();
}

void RecordWindow::AddGroups(QVBoxLayout* column) {
  std::array<QVBoxLayout*, 2> sides{};
  std::size_t groups = 0;
  for (controls::Control* control : record_.Controls()) {
    if (control->GetKind() != Kind::Frame || control->Parent()) continue;
    if (!sides[0]) {
      auto* both = new QHBoxLayout;
      both->setSpacing(3 * kGap);
      for (QVBoxLayout*& side : sides) both->addLayout(side = new QVBoxLayout, 1);
      column->addLayout(both);
    }
    auto* group = static_cast<FoldGroup*>(GetBinder().Make(*control));
    AddRows(group->Body(), control);
    sides.at(groups++ % sides.size())->addWidget(group);
  }
  for (QVBoxLayout* side : sides) {
    if (side) side->addStretch(1);
  }
}

void RecordWindow::AddButtons(QVBoxLayout* column) {
  auto* foot = new QHBoxLayout;
  foot->setSpacing(kGap);
  foot->addStretch(1);
  for (controls::Control* control : record_.Controls()) {
    if (control->GetKind() == Kind::Button) foot->addWidget(GetBinder().Make(*control));
  }
  column->addLayout(foot);
}

}  // namespace quillon::ui
