// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/boxes.h"
#include "host/disk_thread.h"
#include "host/files/files.h"
#include "host/status.h"

namespace quillon::host {

// The two given forms of the question: "...盘空间不足，请释放..." and "...盘空间不足！请释放...".
enum class DiskFullWording { Comma, Exclamation };

struct DiskFullQuestion {
  DiskFullWording wording = DiskFullWording::Comma;
  std::string title = kBoxTitle;
};

// The question about a full disk for an output path: Retry and Cancel, stop icon. It names the drive, which is
// the first character of the path, an ASCII letter in upper case.
Box DiskFullBox(const std::string& path, const DiskFullQuestion& question = {});

// The one place that asks about a full disk. What writes files below it only returns the failure.
class Saver {
 public:
  // stop is called when the user gives up; it may be empty. thread makes copies, if set.
  Saver(Boxes& boxes, Files& files, std::function<void()> stop, DiskThread* thread = nullptr)
      : boxes_(boxes), files_(files), stop_(std::move(stop)), thread_(thread) {}

  // Calls save, and shows DiskFullBox for path as long as it fails with a full disk. Retry calls save again, without
  // limit. Cancel or a closed box calls stop and returns the failure. Every other failure is returned unasked.
  template <class Write>
  Status Save(const std::string& path, Write save, const DiskFullQuestion& question = {}) const {
    Status status = save();
    while (status.DiskFull() && AskToRetry(path, question)) status = save();
    return status;
  }
  // Files::Copy in the same way, given up if a disk is unresponsive (see DiskThread::Run).
  Status Copy(const std::string& from, const std::string& to, const DiskFullQuestion& question = {},
              CopyTimes times = CopyTimes::OfSource) const;
  // Copies a finished work file to a result. A result that replaces a file keeps its times, as it does with Save.
  Status Deliver(const std::string& work, const std::string& result, const DiskFullQuestion& question = {}) const {
    return Copy(work, result, question, CopyTimes::OfReplaced);
  }

 private:
  // Shows the question. Returns true for Retry, otherwise calls stop.
  bool AskToRetry(const std::string& path, const DiskFullQuestion& question) const;

  Boxes& boxes_;
  Files& files_;
  std::function<void()> stop_;
  DiskThread* thread_;
};

}  // namespace quillon::host
