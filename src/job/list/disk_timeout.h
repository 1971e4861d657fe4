// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>

#include "host/background_call.h"
#include "host/status.h"

namespace quillon::job {

class Program;

// How long a disk is waited for. It begins to count when it is made.
class DiskTimeout {
 public:
  explicit DiskTimeout(Program& program);

  // Waits for work on a disk, which counts in heard what the disk has answered so far. The pump has its turns
  // meanwhile. Stopped as soon as a stop is requested; Other with "没有响应" once the disk was silent for half a
  // minute.
  host::Status Await(const host::BackgroundCall& errand, const std::atomic<std::size_t>& heard);

 private:
  Program& program_;
  bool stopped_;   // a stop of some work before, which is none of this one
  double lately_;  // when the disk last answered
};

}  // namespace quillon::job
