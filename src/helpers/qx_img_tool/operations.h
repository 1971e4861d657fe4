// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// One order for the tool. The answer, and all further communication, is the settings value key of application.
struct ToolOrder {
  std::string application;
  std::string input;
  std::string output;
  std::string key;
  std::vector<std::string> rest;  // the fields after the name of the operation

  // Returns a field after the name of the operation, "" if there are fewer.
  std::string Field(std::size_t number) const { return number < rest.size() ? rest[number] : ""; }
};

// Each operation also writes the text of a failure into the key of the order, unless stated otherwise.

// Writes the page count of a PDF into the key, and the width and height of its first page, in pixels at the given
// resolution, into "PdfW" and "PdfH". Writes the first page to "Tmp.jpg" in the folder order.output.
// Fields: resolution, JPEG quality.
host::Status GetPdfPages(Helper& helper, const ToolOrder& order);

// Writes the page count of a TIFF into the key and its first page to "Tmp.jpg" in the folder order.output.
// Further fields are ignored.
host::Status GetTiffPages(Helper& helper, const ToolOrder& order);

// Crops the pages of a PDF. Field: "left|top|right|bottom" in per cent. Progress in the key: "page/pages".
host::Status CutPdfPages(Helper& helper, const ToolOrder& order);

// Renders the pages of a PDF to "0001.jpg" and so on in a folder. Then follows the key, in which the program counts the
// pages that it has cut to "A0001.jpg" and so on, and binds these to a PDF. Pages that were not cut are used as they
// are.
// Field: the folder.
host::Status SplitPdf(Helper& helper, const ToolOrder& order);

// Follows the key, in which the program counts the pages that it has written as "0001.jpg" and so on into the folder
// order.input, and makes a TIFF from them.
// Fields: compression, one without a meaning, number of pages.
// The key belongs to the program, so failures are not written into it.
host::Status MakeTiff(Helper& helper, const ToolOrder& order);

// Binds the sheets whose paths the program writes into the key one by one, until it writes "end". The answer is "" for
// an accepted sheet, and the reason for one that cannot be used.
// Fields: picture for the back, header, whether to make a TIFF, resolution, whether to convert to CMYK.
host::Status BindSheets(Helper& helper, const ToolOrder& order);

}  // namespace quillon::helpers
