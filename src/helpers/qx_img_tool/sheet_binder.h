// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "base/rect.h"
#include "helpers/runtime/helper.h"
#include "imaging/image.h"
#include "imaging/pixels/text_mask.h"

namespace quillon::helpers {

// The options of binding.
struct BindOptions {
  std::string back;    // a picture that is added after every sheet, "" for none
  std::string header;  // drawn in red at the top of every sheet, "" for none
  bool tiff = false;   // a TIFF instead of a PDF
  int dpi = 0;         // 0 for the resolution of the sheet, 300 if it has none
  bool cmyk = false;   // convert to CMYK; a sheet fails if a profile is missing
};

// Collects finished sheets one by one in a draft.
class SheetBinder {
 public:
  virtual ~SheetBinder() = default;
  // Adds a sheet; its file is not needed afterwards. If it fails, the sheets before it are unaffected.
  virtual host::Status Add(const std::string& sheet) = 0;
  virtual int Sheets() const = 0;
  virtual host::Status Finish() = 0;
};

// A PDF embeds JPEG sheets byte for byte, unless they must be converted to CMYK. Other formats are encoded as JPEG
// first.
std::unique_ptr<SheetBinder> MakePdfBinder(Helper& helper, const BindOptions& options, host::Draft& draft);
std::unique_ptr<SheetBinder> MakeTiffBinder(Helper& helper, const BindOptions& options, host::Draft& draft);

// Converts a picture to CMYK if the options ask for it, with the same profiles as the program.
host::Status ConvertToCmyk(Helper& helper, const BindOptions& options, imaging::Image& image);

// The header line of a sheet, and its place in pixels of the sheet: centred, 20 * width / height pixels below the upper
// edge. The font size is 50 * width / height points.
struct SheetHeader {
  imaging::TextMask text;
  base::Rect place;
};
host::Status DrawHeader(const std::string& text, base::Size sheet, SheetHeader& header);

}  // namespace quillon::helpers
