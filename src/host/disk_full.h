// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/boxes.h"
#include "host/status.h"

namespace quillon::host {

// The two given forms of the question: "...盘空间不足，请释放..." and "...盘空间不足！请释放...".
enum class DiskFullWording { Comma, Exclamation };

// The question about a full disk for an output path: Retry and Cancel, stop icon. It names the drive, which is
// the first character of the path, an ASCII letter in upper case.
Box DiskFullBox(const std::string& path, DiskFullWording wording);

// Saves and, while the disk is full, asks about it. Retry saves again, without limit; Cancel (or a closed box) calls
// stop and hands back the failure. Every other failure comes back unasked.
Status SaveAsking(Boxes& boxes, const std::string& path, DiskFullWording wording, const std::function<void()>& stop,
                  const std::function<Status()>& save, const std::string& title = kBoxTitle);

}  // namespace quillon::host
