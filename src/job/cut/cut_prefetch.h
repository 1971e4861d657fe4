// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "imaging/services.h"
#include "job/cut/cut_run.h"

namespace quillon::job {

// Plans with the image services which work and which sizes the next files of a run will ask for. A forecast that turns
// out wrong costs time and nothing else.
class CutPrefetch {
 public:
  explicit CutPrefetch(CutRun& run);
  ~CutPrefetch();
  CutPrefetch(const CutPrefetch&) = delete;
  CutPrefetch& operator=(const CutPrefetch&) = delete;

  // How many files of a run without a list are worth announcing.
  std::size_t Lookahead() const;

  // Before row n (from 1) of the list is handled.
  void Prefetch(std::size_t row);
  // In a run without a list: the file that is handled next, and those behind it.
  void Prefetch(const std::vector<std::string>& paths);

 private:
  struct Forecast {
    std::size_t row;   // 0 without a list
    std::string path;  // "" with one
    std::optional<imaging::FileWork> work;
  };

  // Nothing for a file whose cut cannot be foreseen.
  std::optional<imaging::FileWork> Foresee(std::size_t row, const std::string& path, base::Size size);
  void PlanWork();
  void PrefetchWorks(std::size_t row);
  void PrefetchMeasures(std::size_t row);

  CutRun& run_;
  bool foresees_;              // files of this run can be foreseen
  std::deque<Forecast> next_;  // in the order of the run
  std::size_t looked_ = 0;     // the last row that was looked at for work
  std::size_t measured_ = 0;   // the last row that was announced for measuring
};

}  // namespace quillon::job
