// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "helpers/runtime/helper.h"
#include "imaging/image.h"

namespace quillon::helpers {

// How sheets are bound.
struct BindOptions {
  std::string back;    // a picture that follows every sheet; "" for none
  std::string header;  // drawn in red at the top of every sheet; "" for none
  bool tiff = false;   // a TIFF instead of a PDF
  int dpi = 0;         // 0: what the sheet tells, else 300
  bool cmyk = false;   // a sheet fails where a profile for it is missing
};

// Takes finished sheets one by one into a draft.
class SheetBinder {
 public:
  virtual ~SheetBinder() = default;
  // Nothing of the sheet is needed afterwards. A sheet that fails leaves those before it as they are.
  virtual host::Status Add(const std::string& sheet) = 0;
  virtual int Sheets() const = 0;
  virtual host::Status Finish() = 0;
};

// A PDF takes JPEG sheets byte for byte, unless they are to become CMYK; others become JPEG first.
std::unique_ptr<SheetBinder> MakePdfBinder(Helper& helper, const BindOptions& options, host::Draft& draft);
std::unique_ptr<SheetBinder> MakeTiffBinder(Helper& helper, const BindOptions& options, host::Draft& draft);

// Brings a picture to CMYK where the options ask for it, by the profiles of the program's own conversion.
host::Status ToPress(Helper& helper, const BindOptions& options, imaging::Image& image);

}  // namespace quillon::helpers
