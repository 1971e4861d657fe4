// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>

#include "imaging/services.h"
#include "job/cut_run.h"

namespace quillon::job {

// Tells the image services which crops and sizes the next rows of the list will ask for. A forecast that comes out
// otherwise costs time and nothing else.
class CutForecast {
 public:
  explicit CutForecast(CutRun& run);
  ~CutForecast();
  CutForecast(const CutForecast&) = delete;
  CutForecast& operator=(const CutForecast&) = delete;

  // Before row n (from 1) is handled.
  void Announce(std::size_t row);

 private:
  struct Forecast {
    std::size_t row;
    imaging::CropRequest request;
  };

  void AnnounceCrops(std::size_t row);
  void AnnounceMeasures(std::size_t row);

  CutRun& run_;
  bool foresees_;              // the options leave the plain crop of a jpeg as the only way
  std::deque<Forecast> next_;  // in the order of rows
  std::size_t looked_ = 0;     // the last row that was looked at for a crop
  std::size_t measured_ = 0;   // the last row that was announced for measuring
};

}  // namespace quillon::job
