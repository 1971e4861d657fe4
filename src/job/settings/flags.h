// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "imaging/image.h"

namespace quillon::job {

// The process-wide flags and values that all drivers read. They are written and read on the one thread of control.
struct Flags {
  bool StopRequested = false;  // set by MenuStop or a refused disk-full retry; tested after each file
  bool LargeCapacityMode = false;
  bool AdvancedOptionsLoaded = false;  // no option of FBaseOpt counts until its window was loaded
  bool GifOptionsLoaded = false;
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
  std::string OmittedFolders;  // one folder a line, each with CR LF
  bool BackWorkerStarted = false;
  bool Busy = false;  // a listing or a run is under way; what would start another beeps instead

  // Set once at start-up.
  std::string TiffCompression = "lzw";
  double ScreenRatio = 1.0;   // desktop width over height
  bool HandlersLive = false;  // start-up is done: limits of boxes beep from now on
  int SheetWidth = 0;         // imposition page, pixels
  int SheetHeight = 0;
};

}  // namespace quillon::job
