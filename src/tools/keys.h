// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

// The values of the settings store that the program and its helpers talk through. All stand in section "Default".
namespace quillon::tools {

// The program's title, the application of all keys but one.
inline constexpr const char* kTitle = "Quillon";
// The application of PicsToGif alone.
inline constexpr const char* kGifApplication = "PicsCut";

namespace key {

inline constexpr const char* kGetTiffPages = "GetTiffPages";  // page count of a tiff, from QxImgTool
inline constexpr const char* kGetPdfPages = "GetPdfPages";    // page count of a pdf, from QxImgTool
inline constexpr const char* kPdfW = "PdfW";                  // page size in pixels, with the count
inline constexpr const char* kPdfH = "PdfH";
inline constexpr const char* kCutPdf = "CutPdf";              // progress text of cutpdf
inline constexpr const char* kSplitPdf = "SplitPdf";          // page number, both sides write
inline constexpr const char* kMakeTiff = "MakeTiff";          // number of the page just finished, for QxImgTool
inline constexpr const char* kBackMakeTiff = "BackMakeTiff";  // "1" for ever once the program's own assembly failed
inline constexpr const char* kMakeTiffProg = "MakeTiffProg";  // progress of DCTiffsMaker
inline constexpr const char* kQxBackImg = "QxBackImg";        // command, then "1"
inline constexpr const char* kQxImgTool = "QxImgTool";        // feed of the binder
inline constexpr const char* kExif = "Exif";                  // order of TessaExifHandler
inline constexpr const char* kOcrRes = "OCRRes";              // text found by QxBackOCRer
inline constexpr const char* kPicsToGif = "PicsToGif";        // frames assembled so far, of kGifApplication

}  // namespace key

// A missing value is empty. WriteKey tells whether the helpers see the value; where they do not, there is no use in
// waiting for their answer.
std::string ReadKey(host::Host& host, const std::string& key, const std::string& application = kTitle);
bool WriteKey(host::Host& host, const std::string& key, const std::string& value,
              const std::string& application = kTitle);
// What a call fails with then.
host::Status NotHeard(const std::string& helper);

}  // namespace quillon::tools
