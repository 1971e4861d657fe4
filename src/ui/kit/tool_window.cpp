// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/tool_window.h"

#include <QCloseEvent>

#include "ui/kit/text.h"

namespace quillon::ui {

ToolWindow::ToolWindow(controls::Window& record, Binder::Refusal onRefusal, QWidget* parent, Qt::WindowFlags flags)
    : QDialog(parent, flags), record_(record), binder_(record, std::move(onRefusal)) {
  setObjectName(Shown(record.Name()));
  setWindowTitle(Shown(record.Title()));
  token_ = record_.Observe({}, [this](controls::Window&) {
    setWindowTitle(Shown(record_.Title()));
    Follow();
  });
}

ToolWindow::~ToolWindow() { record_.Forget(token_); }

void ToolWindow::Follow() { setVisible(record_.Visible()); }

// Closing is a request to the record, which may refuse it; the window is hidden when the record is.
void ToolWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void ToolWindow::reject() {
  binder_.CommitTyped();
  record_.Close();
}

}  // namespace quillon::ui
