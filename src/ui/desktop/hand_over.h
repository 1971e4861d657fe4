// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "host/files/files.h"

namespace quillon::ui {

// Passes the files of a second start to the program that runs already. The second one saves their paths in a file of
// the program folder; the first one watches that folder, reads the file and removes it.

// Returns false if the paths could not be saved. Relative paths start at the current folder.
bool HandOver(host::Files& files, const std::string& programFolder, const std::vector<std::string>& paths);

class HandOverWatch {
 public:
  // Receives the paths of one start. Returns false if it cannot accept them now; they are then offered again.
  using Receiver = std::function<bool(const std::vector<std::string>& paths)>;

  // Also passes on what was handed over while this program was starting, or to one that ended before it read it.
  HandOverWatch(host::Files& files, std::string programFolder, Receiver receiver);

 private:
  std::vector<std::string> Pending() const;
  void Collect();

  host::Files& files_;
  std::string programFolder_;
  Receiver receiver_;
  QFileSystemWatcher watcher_;
  QTimer pause_;  // several changes of the folder are one
};

}  // namespace quillon::ui
