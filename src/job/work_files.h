// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

// The files that the program keeps in its program folder while it works, by their names in that folder. The names are
// fixed, and every owner overwrites an existing file: a program folder belongs to one process, one run works at a
// time, and a preview shows one picture. Order files and answers of the helpers belong to tools/.
namespace quillon::job::work_files {

// --- Of the normal cut, for one file each. The next file overwrites them.
// The source, zoomed before the cut.
inline constexpr const char* kZoomedSource = "Tmp.jpg";
// The picture in memory, for a cut that memory does not hold beside it.
inline constexpr const char* kBitmap = "Tmp.bmp";
// The pdf made of the finished picture; copied to the output, then removed.
inline constexpr const char* kPdf = "Tmp.pdf";
// Stem of the cut that a border follows, and of the cut of a gif; with the extension of the output.
inline constexpr const char* kCutStem = "Tmp";
// Stem of the finished picture that replaces the output at the end; with the extension of the output. Also of the cut
// of a watched file that replaces its source, and of a region that helpers convert. If the picture that is read has
// this name, because the manual frame has made it, kCutStem and kResultStem are exchanged.
inline constexpr const char* kResultStem = "Tmp2";
// Stem of the copy of a source that its output overwrites, for its Exif; with the extension of the source.
inline constexpr const char* kExifSourceStem = "tmp";

// The frames that CutMedia has cut out of a gif, until they are copied to the output. Removed before each file.
inline constexpr const char* kCutFrames = "Tmp.gif";

// Returns the name of the copy of an output on which the Exif helper works. The number differs for each output: a
// helper that is late may still write to the copy of an earlier one. Removed when the helper has ended.
inline std::string ExifTargetStem(std::int64_t number) { return "Exif" + std::to_string(number); }

// --- Of the preview, until it shows another picture.
// A picture larger than the preview may show, reduced; and what the manual frame has turned or widened.
inline constexpr const char* kShownPicture = "Tmp.jpg";
// The second of the two that the manual frame writes by turns, since it cannot write the one that it reads.
inline constexpr const char* kOtherShownPicture = "Tmp2.jpg";

// --- Of the program.
// A white picture. Written at every start; a run with a border or with sheets replaces it by one of the fixed size.
inline constexpr const char* kCanvas = "Canvas.bmp";
// The folders that earlier runs have handled, for ChOmitFolds. Written at the end of a run, kept for ever.
inline constexpr const char* kOmittedFolders = "OmitSubfolds.dat";
// A folder for the pages of pdf files, removed when the program ends.
inline constexpr const char* kPdfPages = "Pdfs";

}  // namespace quillon::job::work_files
