// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/command_bars.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

// Returns true if the entry is a submenu.
bool HoldsOthers(const job::Form1& form, const controls::Control& menu) {
  return std::any_of(form.Controls().begin(), form.Controls().end(), [&menu](const controls::Control* other) {
    return other->GetKind() == controls::Kind::Menu && other->Parent() == &menu;
  });
}

// Returns true if a separator precedes the entry.
bool BeginsGroup(const job::Form1& form, const controls::Control& menu) {
  return &menu == &form.MenuInputDir || &menu == &form.MenuExit || &menu == &form.MenuClearList ||
         &menu == &form.MenuAbout;
}

// Adds the children of parent to target, or the top entries to the menu bar if parent is nullptr.
void Fill(job::Form1& form, Binder& binder, QMainWindow& window, QMenu* target, const controls::Control* parent) {
  for (controls::Control* control : form.Controls()) {
    if (control->GetKind() != controls::Kind::Menu || control->Parent() != parent) continue;
    auto& menu = static_cast<controls::Menu&>(*control);
    if (parent && BeginsGroup(form, menu)) target->addSeparator();
    if (!HoldsOthers(form, menu)) {
      QAction* action = binder.MakeAction(menu, &window);
      (parent ? static_cast<QWidget*>(target) : window.menuBar())->addAction(action);
      // Shortcuts of an action work only inside the widgets that it was added to.
      window.addAction(action);
      continue;
    }
    QMenu* submenu = parent ? target->addMenu(QString()) : window.menuBar()->addMenu(QString());
    submenu->setToolTipsVisible(true);
    binder.Join(menu, submenu);
    Fill(form, binder, window, submenu, &menu);
  }
}

}  // namespace

void BuildMenuBar(job::Form1& form, Binder& binder, QMainWindow& window) {
  Fill(form, binder, window, nullptr, nullptr);
}

QAction* ActionOf(const controls::Menu& menu, const QMainWindow& window) {
  return window.findChild<QAction*>(Shown(menu.Name()));
}

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
  cut_ = addAction(LineIcon(QStringLiteral("cut")), QString());
  ShowForeseen(0, 0);
  cut_->setObjectName(QStringLiteral("startCut"));
  connect(cut_, &QAction::triggered, this, [this] { Cut(); });
  Add(form.MenuStop, QStringLiteral("stop"), QStringLiteral("终止"));
  addSeparator();
  Add(form.MenuBaseOptions, QStringLiteral("options"), QStringLiteral("高级选项"));
  // Which driver can start follows from the enabled menu entries, so any change of an entry may change the button.
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
  QAction* action = binder_.MakeButtonAction(menu, this);
  action->setIcon(LineIcon(icon));
  action->setIconText(words);
  addAction(action);
}

void ToolBar::ShowForeseen(std::size_t rows, std::size_t withoutFile) {
  const QString start = QStringLiteral("开始裁剪");
  cut_->setText(withoutFile == 0 ? start
                                 : start + QStringLiteral("（%1 张，其中 %2 张裁不出图）").arg(rows).arg(withoutFile));
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
  controls::Menu* driver = Driver();
  if (driver && !driver->Visible()) return binder_.Refused(*driver, "这个版本没有，请改选裁剪模式");
  if (driver) {
    const controls::EditResult result = driver->UserClick();
    if (!result.Accepted()) binder_.Refused(*driver, result.refusal);
  }
}

}  // namespace quillon::ui
