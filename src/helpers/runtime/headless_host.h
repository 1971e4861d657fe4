// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/host.h"

namespace quillon::helpers {

// The world of a program that nobody watches: the real disk, clock and settings; no question is answered with yes, and
// there are no windows, no screen and no dialogs.
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
