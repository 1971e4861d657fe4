// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

#include "host/boxes.h"

namespace quillon::ui {

// Message boxes on the screen, modal to the window that stands in front, with Chinese buttons.
class QtBoxes : public host::Boxes {
 public:
  host::Reply Show(const host::Box& box) override;
  void Beep() override;

  // The window that boxes belong to while no other one is active.
  void SetOwner(QWidget* owner) { owner_ = owner; }

 private:
  QPointer<QWidget> owner_;
};

// The file and folder dialogs of the desktop.
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

// "name|*.a;*.b|name|*.c" as the toolkit writes it: "name (*.a *.b);;name (*.c)". A name that lists its patterns in
// brackets of its own is not given them twice.
QString ToolkitFilter(const std::string& filter);

}  // namespace quillon::ui
