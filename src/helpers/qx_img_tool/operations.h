// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// One order to the tool. The answer and the talk with the program go through key, in the settings of application.
struct ToolOrder {
  std::string application;
  std::string input;
  std::string output;
  std::string key;
  std::vector<std::string> rest;  // the fields behind the operation's name

  // A field behind the operation's name, "" where there are fewer.
  std::string Field(std::size_t number) const { return number < rest.size() ? rest[number] : ""; }
};

// Each operation tells what failed in the order's key as well, unless it says otherwise.

// Page count of a PDF into the key; width and height of its first page, in pixels of the resolution asked for, into
// "PdfW" and "PdfH"; the first page itself into "Tmp.jpg" of the folder that is the order's output. Fields: resolution,
// JPEG quality.
host::Status GetPdfPages(Helper& helper, const ToolOrder& order);

// Page count of a TIFF into the key, its first page into "Tmp.jpg" of the folder that is the order's output. All
// further fields are ignored.
host::Status GetTiffPages(Helper& helper, const ToolOrder& order);

// Takes per cents off the pages of a PDF. Field: "left|top|right|bottom". Progress in the key: "page/pages".
host::Status CutPdfPages(Helper& helper, const ToolOrder& order);

// Turns the pages of a PDF into "0001.jpg" and on in a folder, then follows the key, where the program counts the pages
// that it has cut to "A0001.jpg" and on, and binds these to a PDF again. A page that was not cut comes in as it is.
// Field: the folder.
host::Status SplitPdf(Helper& helper, const ToolOrder& order);

// Follows the key, where the program counts the pages that it has put into the folder that is the order's input, as
// "0001.jpg" and on, and makes a TIFF of them. Fields: compression, one without meaning, number of pages. The key
// belongs to the program: failures are not told there.
host::Status MakeTiff(Helper& helper, const ToolOrder& order);

// Binds the sheets that the program names in the key, one by one, until it says "end". A sheet that was taken is
// answered with "", one that cannot be taken with the reason. Fields: back side, header, whether a TIFF is to be made,
// resolution, whether colours are to become CMYK.
host::Status BindSheets(Helper& helper, const ToolOrder& order);

}  // namespace quillon::helpers
