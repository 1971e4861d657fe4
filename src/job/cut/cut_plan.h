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

// What the steps of a cut will do with one file, as far as the image services alone do it.
struct CutPlan {
  imaging::FileWork work;
  std::string output;  // what the work leaves: the output or a work file
  imaging::Encoder encoder = imaging::Encoder::Jpeg;
  base::Size size;  // of the picture in it

  // Whether it is a crop that the step asks for by itself.
  bool PlainCrop() const;
};

// Whether any file of a run with these settings can be foreseen: none that waits for the user, for another file, or
// gives several outputs.
bool IsForeseeable(const CutRun& run, const CutSettings& settings);

// The plan for a file whose source has that size, with its settings and the cut parameters as they are now. Nothing if
// the file will be passed over or fail, or if that cannot be known. The steps of cut_steps.h are the measure: what is
// foreseen here is what they would ask for, one by one, with the same parameters.
std::optional<CutPlan> ForeseeCut(const CutFile& file, base::Size size);

// What became of a file whose work may have been prefetched.
enum class Prefetched { None, Used, FileDone };

// Takes the place of the steps ZoomBeforeCut to AddBorder if their work was prefetched and is ready. None: the steps
// are to be taken one by one, and report what fails.
Prefetched UsePrefetched(CutFile& file);

}  // namespace quillon::job
