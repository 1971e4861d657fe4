// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "imaging/types.h"
#include "job/list/run_context.h"

namespace quillon::job {

// Plans the work and the measurements of the next files with the image services. A wrong plan only costs time. Plans
// nothing after a worker died (RunContext::recovering).
class RunPrefetch {
 public:
  // Returns the work that the driver will request for a file; nothing if that is not known. row is that of RunFile;
  // size is in pixels and may be empty. The work must read its source and no other file.
  using Foresee =
      std::function<std::optional<imaging::FileWork>(std::size_t row, const std::string& path, base::Size size)>;

  // If foresee is empty, only measurements are planned.
  RunPrefetch(const RunContext& context, Foresee foresee);
  ~RunPrefetch() { Clear(); }
  RunPrefetch(const RunPrefetch&) = delete;
  RunPrefetch& operator=(const RunPrefetch&) = delete;

  // See FileDriver::Lookahead.
  std::size_t Lookahead() const;

  // Called before row n (from 1) of the list is handled.
  void Prefetch(std::size_t row);
  // Called before a file is handled in a run without a list. paths are that file and those that follow it.
  void Prefetch(const std::vector<std::string>& paths);
  // Empties the plans. Called when no file follows, or none for now.
  void Clear();

 private:
  struct PlannedFile {
    std::size_t row;   // 0 if there is no list
    std::string path;  // "" if there is a list
    std::optional<imaging::FileWork> work;
  };

  void PlanWork();
  void PrefetchWorks(std::size_t row);
  void PrefetchMeasures(std::size_t row);

  const RunContext& context_;
  Foresee foresee_;
  std::deque<PlannedFile> next_;  // in the order of the run
  std::size_t foreseen_ = 0;      // the last row that foresee_ was called for
  std::size_t measured_ = 0;      // the last row that was planned for measuring
};

}  // namespace quillon::job
