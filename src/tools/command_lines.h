// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"

// The parameter texts of the helpers, to the letter: each is handed over as one argument. Paths stand in them as they
// are; MayStand in carried.h tells whether one can. app is the program folder.
namespace quillon::tools {

// --- QxImgTool: fields between tabs. 1 application, 2 input, 3 output, 4 key of the answer, 5 operation.
std::string CountPdfPagesText(const std::string& pdf, const std::string& app, int dpi, int quality);
// number is ignored by the tool; a folder walk hands over a share of the running number, all others 1.
std::string CountTiffPagesText(const std::string& tiff, const std::string& app, int number = 1);
// The margins left, top, right, bottom as they stand in TCutValue.
struct CutTexts {
  std::string left;
  std::string top;
  std::string right;
  std::string bottom;
};
std::string CutPdfText(const std::string& pdf, const std::string& out, const CutTexts& margins);
// Pages come out as Images/0001.jpg and on.
std::string SplitPdfText(const std::string& pdf, const std::string& out, const std::string& app);
// compression is "lzw", "ccitt3", "ccitt4", "rle" or "noe".
std::string MakeTiffText(const std::string& pageFolder, const std::string& out, const std::string& compression,
                         int pages);
struct BindOrder {
  std::string flag;
  std::string out;
  std::string backImage;
  std::string empty;
  std::string a;
  std::string b;
  std::string c;
};
std::string BindPdfText(const BindOrder& order);

// --- QxBackImg. A rectangle has whole or broken pixels, told in the shortest decimal text.
std::string FirstBackText(const std::string& file);
std::string LoadBackText(const std::string& file);
struct BackCut {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};
std::string CutBackText(const std::string& app, const BackCut& cut, const std::string& out, const std::string& quality);

// --- PicHandler: words between blanks, paths in quotes.
// extension with its point, as in "Tmp.jpg".
std::string CmykText(const std::string& file, const std::string& app, const std::string& extension);
// base is the output path without extension.
std::string PdfText(const std::string& file, const std::string& base);
// With quality and density of the job; no density is told for dpi 0.
std::string PdfText(const std::string& file, const std::string& base, const std::string& quality, int dpi);
std::string CmykPreviewText(const std::string& file, const std::string& app, const std::string& profile,
                            const std::string& out);

// --- QxBackOCRer: a line for the application, one for the picture.
std::string OcrText(const std::string& picture);

// --- PicCirleCut: fields between tabs.
std::string CircleText(const std::string& source, const std::string& target, const base::Rect& box);

// --- The value of the key Exif while TessaExifHandler runs.
std::string ExifText(const std::string& source, const std::string& target);

}  // namespace quillon::tools
