// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <string>

#include "base/rect.h"
#include "host/status.h"

// The parameter texts of the helpers. Each text is passed to the helper as its one argument, byte for byte as given
// here.
// Paths are inserted unchanged; CheckPaths finds those that would break the format. app is the program folder.
namespace quillon::tools {

// How a parameter text separates its fields, and so which bytes a path in it must not contain.
enum class TextFormat {
  Tabs,         // tabs between fields: no tab, no line break
  TabsAndBars,  // tabs, and bars inside of fields: no bar either
  Bars,         // bars only, in a settings value: no bar
  Quotes        // quoted words: no quote, no line break
};

// Succeeds if all paths can be inserted into such a text and read back unchanged. Otherwise fails with Unsupported; the
// message contains the path and the name of the helper.
host::Status CheckPaths(TextFormat format, const std::string& helper, std::initializer_list<std::string> paths);

// --- QxImgTool: fields between tabs. 1 application, 2 input, 3 output, 4 settings key of the answer, 5 operation.
std::string CountPdfPagesText(const std::string& pdf, const std::string& app, int dpi, int quality);
// The tool ignores number; a folder walk passes part of its running number, other callers 1.
std::string CountTiffPagesText(const std::string& tiff, const std::string& app, int number = 1);
// The margins left, top, right and bottom, as the texts of TCutValue.
struct CutTexts {
  std::string left;
  std::string top;
  std::string right;
  std::string bottom;
};
std::string CutPdfText(const std::string& pdf, const std::string& out, const CutTexts& margins);
// The tool writes the pages to Images/0001.jpg, Images/0002.jpg and so on.
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

// --- QxBackImg: fields between bars. Rectangles are in pixels, with fractions, in the shortest decimal text.
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
// extension includes its point, as in "Tmp.jpg".
std::string CmykText(const std::string& file, const std::string& app, const std::string& extension);
// base is the output path without its extension.
std::string PdfText(const std::string& file, const std::string& base);
// With the quality and the density of the job; a dpi of 0 omits the density.
std::string PdfText(const std::string& file, const std::string& base, const std::string& quality, int dpi);
std::string CmykPreviewText(const std::string& file, const std::string& app, const std::string& profile,
                            const std::string& out);

// --- QxBackOCRer: a line for the application, one for the picture.
std::string OcrText(const std::string& picture);

// --- PicCirleCut: fields between tabs.
std::string CircleText(const std::string& source, const std::string& target, const base::Rect& box);

// --- PicsToAniGif: fields between tabs. Each frame has a time of its own in the list of frames.
std::string GifText(const std::string& folder, base::Size canvas, const std::string& target);

// --- The value of the key Exif while TessaExifHandler runs.
std::string ExifText(const std::string& source, const std::string& target);

}  // namespace quillon::tools
