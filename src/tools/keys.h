// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

// The settings values through which the program and its helpers communicate. All are in the section "Default".
namespace quillon::tools {

// The application of the keys unless a caller names another one; also the title of the program.
inline constexpr const char* kTitle = "Quillon";
inline constexpr const char* kSection = "Default";

namespace key {

inline constexpr const char* kGetTiffPages = "GetTiffPages";  // page count of a TIFF, from QxImgTool
inline constexpr const char* kGetPdfPages = "GetPdfPages";    // page count of a PDF, from QxImgTool
inline constexpr const char* kPdfW = "PdfW";                  // page size in pixels, with the count
inline constexpr const char* kPdfH = "PdfH";
inline constexpr const char* kCutPdf = "CutPdf";              // progress text of cutpdf
inline constexpr const char* kSplitPdf = "SplitPdf";          // page number, written by both sides
inline constexpr const char* kMakeTiff = "MakeTiff";          // number of the page just finished, for QxImgTool
inline constexpr const char* kMakeTiffProg = "MakeTiffProg";  // progress of DCTiffsMaker
inline constexpr const char* kQxBackImg = "QxBackImg";        // command, then "1"
inline constexpr const char* kQxImgTool = "QxImgTool";        // next picture for the PDF, then the tool's answer
inline constexpr const char* kExif = "Exif";                  // order for TessaExifHandler
inline constexpr const char* kOcrRes = "OCRRes";              // text found by QxBackOCRer
inline constexpr const char* kCutMedia = "CutMedia";          // why CutMedia failed, "" if it did not

}  // namespace key

// The answer of a helper that found the disk full; DCTiffsMaker and CutMedia give it.
inline constexpr const char* kFullDisk = "FullDisk";

// ReadKey returns "" for a missing value.
// WriteKey returns false if the helpers cannot see the value; waiting for their answer would then be useless.
inline std::string ReadKey(host::Host& host, const std::string& key, const std::string& application = kTitle) {
  return host.settings.Get(application, kSection, key);
}
inline bool WriteKey(host::Host& host, const std::string& key, const std::string& value,
                     const std::string& application = kTitle) {
  return host.settings.Set(application, kSection, key, value);
}
// The failure of a call whose command could not be written.
inline host::Status CommandNotWritten(const std::string& helper) {
  return {host::Problem::Other, "设置无法写入，不能把命令交给 " + helper};
}

}  // namespace quillon::tools
