// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "base/rect.h"
#include "imaging/image.h"
#include "job/cut/cut_run.h"
#include "job/settings/cut_settings.h"
#include "job/settings/geometry.h"

namespace quillon::job {

// One file on its way through the steps of the cut.
struct CutFile {
  // row is the data row from 1, or 0 for a file that no row stands for.
  CutFile(CutRun& owner, std::size_t listRow, std::string path);

  // Whether a row stands for it.
  bool Listed() const { return row > 0; }
  // Returns the path of a work file with the extension of the output; see work_files.h.
  std::string WorkFile(const std::string& stem) const;
  // Whether steps behind the cut change the picture, so that the cut goes to a work file first.
  bool BorderFollows() const { return settings.addBoard; }
  bool ConversionFollows() const;
  // Quality of a jpeg that the cut leaves: a work file is saved again later.
  int CutQuality() const;
  imaging::Exif ExifWish() const { return settings.keepExif ? imaging::Exif::Keep : imaging::Exif::Drop; }

  CutRun& run;
  Program& program;
  CutSettings settings;

  std::size_t row;
  std::string listedPath;  // the source as it is listed, and its parts
  std::string folder;
  std::string name;
  std::string extension;

  std::string Src;  // what is cut: the listed file or a work file made of it
  std::string OutExt;
  std::string Dst;
  std::string exifSource;  // the file whose Exif goes to the output
  int W = 0;
  int H = 0;
  host::Status measured;     // why Src has no size
  imaging::Image Work;       // the turned picture, once it was turned
  bool turnedFirst = false;  // by CmbRotate, so that the cut is made of Work
  double RestoreAngle = 0;
  base::Rect rect;
  Overhang overhang;

  std::string target;      // where the cut is to be saved: Dst or a work file
  std::string latestFile;  // where the newest state of the output stands, "" before the cut
  base::Size latestSize;   // of that picture
  FileResult result;
};

// Where the output stands in the end: Dst, or the pdf made of it.
std::string ResultPath(const CutFile& file);

// The outputs of that source, as far as they can be told before it is begun.
std::vector<std::string> ForeseenOutputs(CutRun& run, const std::string& path);

// What a step answers: go on, or this file is done with (result tells how).
enum class Step { Next, FileDone };

Step Fail(CutFile& file, std::string why);
// As above, for a step that failed so: an older output may have to go (see RunLedger::DiscardStaleOutput).
Step Fail(CutFile& file, const host::Status& status);

Step PassOver(CutFile& file, std::string why);

// Runs all steps on one file and tells what became of it. Counts a picture that the effects could not load in
// CutRun::failed; what the observer, the list and the totals hear is up to the caller.
FileResult CutOneFile(CutRun& run, std::size_t row, const std::string& path);

}  // namespace quillon::job
