// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/host.h"

namespace quillon::helpers {

// The Host of a program that nobody watches: the real disk, clock, settings and processes, but no windows, screen or
// dialogs. Every message box is answered with Cancel or No if it has such a button.
class HeadlessHost {
 public:
  explicit HeadlessHost(const std::string& programFolder);
  ~HeadlessHost();
  HeadlessHost(const HeadlessHost&) = delete;
  HeadlessHost& operator=(const HeadlessHost&) = delete;

  host::Host& Host();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::helpers
