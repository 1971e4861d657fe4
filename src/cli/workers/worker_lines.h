// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "cli/report/event.h"
#include "cli/report/reporter.h"
#include "host/journal.h"

namespace quillon::cli {

// What a worker process says to the one that started it: its events, and lines that only pass between the two.
struct WorkerLine {
  std::optional<Event> event;
  std::optional<std::string> begun;          // the file that it takes up
  std::optional<std::string> older;          // a file that stands under the name of an output that could not be made
  std::optional<host::JobPart> journal;      // the part of a job whose journal it asks for
  std::optional<host::JobPart> journalDone;  // the one whose journal it needs no more
  std::optional<Progress> progress;          // done and planned alone count
};

std::string BegunLine(const std::string& source);
std::string OlderLine(const std::string& path);
std::string JournalLine(const host::JobPart& part);
std::string JournalDoneLine(const host::JobPart& part);
std::string ProgressLine(const Progress& progress);
// An empty one for anything that is no such line.
WorkerLine ReadWorkerLine(const std::string& line);

}  // namespace quillon::cli
