// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "base/rect.h"
#include "imaging/types.h"
#include "job/cut/cut_file.h"
#include "job/cut/cut_run.h"

namespace quillon::job {

// The part of a file's cut that the image services do alone.
struct CutPlan {
  imaging::FileWork work;
  std::string output;  // the file that the work writes: the output or a work file
  imaging::Encoder encoder = imaging::Encoder::Jpeg;
  base::Size size;  // of the picture in that file

  // Returns whether the work is a single crop. MakeCut uses a prefetched crop by itself.
  bool PlainCrop() const;
};

// Returns whether cuts with these settings can be predicted. They cannot if a cut waits for the user, depends on
// another file, or has several outputs.
bool IsForeseeable(const CutRun& run, const CutSettings& settings);

// Returns the plan for a file whose source has that size, with its settings and the present cut parameters. Returns
// nothing if the file will be passed over or fail, or if that is not known. The plan is made by the same functions as
// the steps of cut_steps.h, so that its requests equal theirs.
std::optional<CutPlan> ForeseeCut(const CutFile& file, base::Size size);

// The result of UsePrefetched.
enum class Prefetched { None, Used, FileDone };

// Replaces the steps ZoomBeforeCut to AddBorder if their work was prefetched and is ready. None: the steps have to be
// executed one by one, and report what fails.
Prefetched UsePrefetched(CutFile& file);

}  // namespace quillon::job
