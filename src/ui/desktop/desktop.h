// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "host/host.h"
#include "host/journal.h"

class QWidget;

namespace quillon::ui {

// The world as the window sees it: boxes, dialogs and screen of the toolkit, everything else of the platform.
class Desktop {
 public:
  // Chooses and fills the program folder.
  Desktop();
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  host::Host& Host();
  host::Journals& Journals();
  // The window that boxes and dialogs belong to.
  void SetOwner(QWidget* owner);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::ui
