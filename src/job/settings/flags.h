// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "imaging/image.h"

namespace quillon::job {

// The process-wide flags and values that all drivers read. They are written and read on the one thread of control.
struct Flags {
  bool StopRequested = false;  // set by MenuStop, or when a full disk is not tried again; tested after each file
  // The user closed the window during a run: the program ends after it, without a question.
  bool CloseRequested = false;
  bool LargeCapacityMode = false;
  bool AdvancedOptionsLoaded = false;  // the options of FBaseOpt have no effect until its window was loaded
  bool GifOptionsLoaded = false;
  bool GifLogoOnly = false;  // mode 1 removes a logo and keeps the size
  bool TiffOptionsLoaded = false;
  bool PdfOptionsLoaded = false;
  bool ArrayLoaded = false;
  bool ManualCutMode = false;
  bool ManualStepDone = false;
  bool SkipCutThisImage = false;
  bool ImageRotated = false;
  bool ManualRotated = false;
  double ManualAngle = 0;
  std::string CurrentImagePath;  // the picture in FCutPre
  imaging::Image FirstImageHandle;
  int PreviewImageWidth = 0;
  int PreviewImageHeight = 0;
  std::string InfoWidth;
  std::string InfoHeight;
  int FixW = 0;
  int FixH = 0;
  int OutDpi = 0;
  int ScreenDpi = 0;
  bool KeepExif = false;
  bool ToBlackWhite = false;
  bool CutThenZoom = false;
  bool ToCmyk = false;
  std::string OmittedFolders;  // one folder a line, each ended by CR LF
  bool BackWorkerStarted = false;
  bool UpdatePending = false;  // an update must be installed before the modes for pages and frames run again
  bool Busy = false;  // a listing or a run is in progress; a command that would start another one beeps instead

  // Set once at start-up.
  std::string TiffCompression = "lzw";
  double ScreenRatio = 1.0;   // width of the desktop divided by its height
  bool HandlersLive = false;  // start-up is done: from now on a value beyond the limits of a box beeps
  int SheetWidth = 0;         // page of the imposition in pixels
  int SheetHeight = 0;

  // Clears what the manual step and turns leave for one file. Called before each file.
  void BeginFile() {
    ManualRotated = ImageRotated = SkipCutThisImage = false;
    ManualAngle = 0;
  }
};

}  // namespace quillon::job
