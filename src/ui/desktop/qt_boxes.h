// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "host/boxes.h"

namespace quillon::ui {

// Message boxes with Chinese buttons, modal to the active window. News that needs no answer is passed on as a line
// instead, unless another window than the owner is in front, where nobody would see the line.
class QtBoxes : public host::Boxes {
 public:
  using News = std::function<void(const QString& line)>;

  host::Reply Show(const host::Box& box) override;
  void Beep() override;

  // Sets the window that boxes belong to while no other window is active, and what receives news for it.
  void SetOwner(QWidget* owner) { owner_ = owner; }
  void SetNews(News news) { news_ = std::move(news); }

 private:
  QPointer<QWidget> owner_;
  News news_;
};

// The file and folder dialogs of the desktop. Paths are bytes, whatever their encoding.
class QtDialogs : public host::Dialogs {
 public:
  std::vector<std::string> OpenFiles(const std::string& title, const std::string& filter, host::Choice choice) override;
  std::string OpenFile(const host::FileQuestion& question) override;
  std::string SaveFile(const host::FileQuestion& question) override;
  std::optional<std::string> ChooseFolder(const std::string& title, const std::string& initial) override;

  void SetOwner(QWidget* owner) { owner_ = owner; }

 private:
  QPointer<QWidget> owner_;
};

// Converts a filter "name|*.a;*.b|name|*.c" to the form of Qt: "name (*.a *.b);;name (*.c)".
// Patterns in brackets at the end of a name are dropped, since Qt adds them itself.
QString ToolkitFilter(const std::string& filter);

}  // namespace quillon::ui
