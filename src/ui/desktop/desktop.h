// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "host/host.h"
#include "host/journal.h"

class QWidget;

namespace quillon::ui {

// The host of the program with windows: boxes, dialogs and screen of Qt, and the POSIX implementations for the rest.
class Desktop {
 public:
  // Chooses the program folder and copies missing files into it.
  Desktop();
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  // Valid while this object lives.
  host::Host& Host();
  host::Journals& Journals();
  // Sets the window that boxes and dialogs are modal to while no other window is active.
  // news receives what needs no answer, as one line.
  void SetOwner(QWidget* owner, std::function<void(const QString& line)> news);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::ui
