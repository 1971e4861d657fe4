// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/tool_bar.h"

#include <QAction>

#include "ui/kit/text.h"
#include "ui/kit/theme/icons.h"
#include "ui/kit/theme/metrics.h"

namespace quillon::ui {

ToolBar::ToolBar(job::Form1& form, Binder& binder, QWidget* parent)
    : QToolBar(QStringLiteral("工具栏"), parent), form_(form), binder_(binder) {
  setObjectName(QStringLiteral("toolBar"));
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  setIconSize(QSize(20, 20));
  Add(form.MenuAddFiles, QStringLiteral("add-files"), QStringLiteral("添加文件"));
  Add(form.MenuReadFiles, QStringLiteral("read-folder"), QStringLiteral("读取目录"));
  addSeparator();
  Add(form.MenuInputDir, QStringLiteral("input-folder"), QStringLiteral("输入目录"));
  Add(form.MenuOutDir, QStringLiteral("output-folder"), QStringLiteral("输出目录"));
  addSeparator();
  cut_ = addAction(LineIcon(QStringLiteral("cut")), QStringLiteral("开始裁剪"));
  cut_->setObjectName(QStringLiteral("startCut"));
  connect(cut_, &QAction::triggered, this, [this] { Cut(); });
  Add(form.MenuStop, QStringLiteral("stop"), QStringLiteral("终止"));
  addSeparator();
  Add(form.MenuBaseOptions, QStringLiteral("options"), QStringLiteral("高级选项"));
  const auto show = [this] {
    controls::Menu* driver = Driver();
    cut_->setEnabled(driver != nullptr);
    const controls::Menu& normal = form_.menuNormalCut;
    cut_->setToolTip(Shown(driver ? driver->Caption() + " (" + driver->Shortcut() + ")" : normal.WhyDisabled()));
  };
  token_ = form_.Observe([show](controls::Control& control, controls::Aspect) {
    if (control.GetKind() == controls::Kind::Menu) show();
  });
  show();
}

ToolBar::~ToolBar() { form_.Forget(token_); }

void ToolBar::Add(controls::Menu& menu, const QString& icon, const QString& words) {
  QAction* action = binder_.MakeTwin(menu, this);
  action->setIcon(LineIcon(icon));
  action->setIconText(words);
  addAction(action);
}

controls::Menu* ToolBar::Driver() const {
  for (controls::Menu* driver : {&form_.menuNormalCut, &form_.MenuGifCut, &form_.MenuPngCut, &form_.MenuPdfCut,
                                 &form_.MenuPenHuiCut, &form_.MenuTiffCut, &form_.MenuColorCut}) {
    if (driver->Enabled()) return driver;
  }
  return nullptr;
}

void ToolBar::Cut() {
  binder_.CommitTyped();
  if (controls::Menu* driver = Driver()) {
    const controls::EditResult result = driver->UserClick();
    if (!result.Accepted()) binder_.Refused(result.refusal);
  }
}

}  // namespace quillon::ui
