// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/settings/run_report.h"

namespace quillon::job {

// What a driver does to one file of a folder run.
class FileDriver {
 public:
  virtual ~FileDriver() = default;

  // What tells this driver's jobs from those of others, and the windows that hold its parameters.
  virtual std::string Name() const = 0;
  virtual std::vector<std::string> Windows() const { return {"Form1", "FBaseOpt"}; }

  // Handles the file with that running number (from 1). results come empty and tell at the end what became of it, one
  // for each output that was wanted, all with row 0 and the path as their source.
  virtual void Cut(const std::string& path, std::size_t number, std::vector<FileResult>& results) = 0;

  // Whether results go beside their sources, and not into the output folder.
  virtual bool BesideSources() const { return false; }
  // The files that Cut would write for path, as far as it can be foreseen.
  virtual std::vector<std::string> Outputs(const std::string& path) const = 0;
  // A source that an earlier part of the run has handled: Cut is not asked for it.
  virtual void HandledBefore(const std::string& /*path*/) {}

  // For work ahead: how many of the files that come next are to be told before each Cut, and those files, the one that
  // is handled now first. Fewer come near the end.
  virtual std::size_t Lookahead() const { return 0; }
  virtual void Prefetch(const std::vector<std::string>& /*paths*/) {}
};

}  // namespace quillon::job
