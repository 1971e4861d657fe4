// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "host/files/files.h"
#include "imaging/image.h"
#include "job/cut/cut_run.h"
#include "job/settings/cut_settings.h"
#include "job/settings/geometry.h"

namespace quillon::job {

// The state of one file during the steps of the cut.
struct CutFile {
  // row is the data row, counted from 1; 0 for a file without a row.
  CutFile(CutRun& owner, std::size_t listRow, std::string path);

  // Returns whether the file has a row.
  bool Listed() const { return row > 0; }
  // Returns the path of a work file with the extension of the output; see work_files.h.
  std::string WorkFile(const std::string& stem) const;
  // Returns the one of the two work files of the cut that a step may write while it reads the file at `read`: the one
  // with this stem (kCutStem or kResultStem), or the other one if `read` is that file.
  std::string WorkFileBeside(const std::string& stem, const std::string& read) const;
  // Return whether a step after the cut changes the picture, so that the cut is written to a work file.
  bool BorderFollows() const { return settings.addBoard; }
  bool ConversionFollows() const;
  // Returns the quality of a jpeg that the cut writes. A work file has a higher one, because it is encoded again.
  int CutQuality() const;
  // The cut that a border follows is a work file, and the border turns it upright.
  imaging::Orient OrientOfCut() const { return BorderFollows() ? imaging::Orient::Defer : imaging::Orient::Apply; }
  imaging::Exif ExifWish() const { return settings.keepExif ? imaging::Exif::Keep : imaging::Exif::Drop; }

  CutRun& run;
  Program& program;
  CutSettings settings;

  std::size_t row;
  std::string listedPath;  // the source as it is listed; its parts follow
  std::string folder;
  std::string name;
  std::string extension;

  std::string Src;  // the file that is cut: the listed one, or a work file made of it
  std::string OutExt;
  std::string Dst;
  std::string exifSource;  // the file from which the output gets its Exif
  int W = 0;
  int H = 0;
  host::Status measured;                              // the failure to measure Src
  imaging::Format format = imaging::Format::Unknown;  // of Src
  imaging::Image Work;                                // the picture in memory, once it was turned
  std::string whyNotTurned;                           // why nobody may turn or pad the picture by hand, "" if one may
  bool turnedFirst = false;                           // CmbRotate has turned the picture, so that Work is cut
  double RestoreAngle = 0;
  base::Rect rect;

  std::string target;      // the path under which the cut is saved: Dst or a work file
  std::string latestFile;  // the file with the newest state of the output, "" before the cut
  base::Size latestSize;   // of that picture
  std::optional<host::Files::ReplacedToTrash> replaced = {};  // set if a foreign file has the name of the output
  FileResult result;
};

// Returns the final path of the output: Dst, or that of the pdf made of it.
std::string ResultPath(const CutFile& file);

// Returns the outputs of that source as far as they are known before its cut.
std::vector<std::string> ForeseenOutputs(CutRun& run, const std::string& path);

// The result of a step: continue with the next one, or end the file. CutFile::result says how it ended.
enum class Step { Next, FileDone };

Step Fail(CutFile& file, std::string why);
// As above, with the reason of the status. May discard a stale output; see RunLedger::DiscardStaleOutput.
Step Fail(CutFile& file, const host::Status& status);

Step PassOver(CutFile& file, std::string why);

// Executes all steps for one file and returns the result. Adds a picture that the effects could not load to
// CutRun::failed. The caller reports the result to the observer, the list and the totals.
FileResult CutOneFile(CutRun& run, std::size_t row, const std::string& path);

}  // namespace quillon::job
