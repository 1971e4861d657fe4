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

// Plans with the image services which work and which sizes the next files of a run will ask for. A forecast that turns
// out wrong costs time and nothing else. Nothing is planned after a process has died in the place of this one.
class RunPrefetch {
 public:
  // Returns the work that the driver will ask for at a file, or nothing if that cannot be known. row is that of
  // RunFile; size is in pixels and may be empty. The work must read its source and no other file.
  using Foresee =
      std::function<std::optional<imaging::FileWork>(std::size_t row, const std::string& path, base::Size size)>;

  // If foresee is empty, only sizes are planned.
  RunPrefetch(const RunContext& context, Foresee foresee);
  ~RunPrefetch() { Clear(); }
  RunPrefetch(const RunPrefetch&) = delete;
  RunPrefetch& operator=(const RunPrefetch&) = delete;

  // See FileDriver::Lookahead.
  std::size_t Lookahead() const;

  // Called before row n (from 1) of the list is handled.
  void Prefetch(std::size_t row);
  // Called in a run without a list: the file that is handled next, and those that follow it.
  void Prefetch(const std::vector<std::string>& paths);
  // Empties the plans: no file follows, or none for now.
  void Clear();

 private:
  struct PlannedFile {
    std::size_t row;   // 0 without a list
    std::string path;  // "" with one
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
