// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "cli/report/event.h"
#include "cli/report/reporter.h"
#include "host/journal.h"

namespace quillon::cli {

// The protocol between a worker and its parent: JSON lines on the worker's stdout. Besides the events of --json there
// are lines that only the parent reads. Both are the same executable, so the format can change at any time. Names of
// files are sent in hexadecimal, because they need not be UTF-8.

// One line of a worker; exactly one member is set.
struct WorkerLine {
  std::optional<Event> event;
  std::optional<std::string> started;        // the source that the worker handles from now on; "": none
  std::optional<std::string> staleOutput;    // an older file under the name of an output that could not be made
  std::optional<host::JobPart> journal;      // the part of a job whose journal the worker has asked for
  std::optional<host::JobPart> journalDone;  // the part that is done, so that its journal is needed no more
  std::optional<Progress> progress;          // only `done` and `planned` are sent
};

// These return a line without its line end.
std::string StartedLine(const std::string& source);
std::string StaleOutputLine(const std::string& path);
std::string JournalLine(const host::JobPart& part);
std::string JournalDoneLine(const host::JobPart& part);
std::string ProgressLine(const Progress& progress);

// Parses a line. Returns one without any member for a text that is no such line.
WorkerLine ReadWorkerLine(const std::string& line);

}  // namespace quillon::cli
