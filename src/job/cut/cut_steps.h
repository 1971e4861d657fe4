// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "imaging/services.h"
#include "job/cut/cut_file.h"

// The steps that one file goes through, in their order.
namespace quillon::job {

// --- Before the cut.
Step MeasureSource(CutFile& file);
Step PassOverSmall(CutFile& file);    // ChFilter
Step KeepExifSource(CutFile& file);   // an overwritten source is gone when its Exif is wanted
Step PassOverFolder(CutFile& file);   // ChOmitFolds
Step ZoomBeforeCut(CutFile& file);    // ChZoomAndCut
Step RotateBeforeCut(CutFile& file);  // CmbRotate
Step NameOutput(CutFile& file);       // Dst, its folder, and where the cut goes first
// The size to which ChZoomAndCut scales the source; nothing if it stays as it is.
std::optional<base::Size> SizeBeforeCut(const CutFile& file);
// The zoomed picture is loaded whole by what follows: one that cannot be is not worth minutes of scaling.
host::Status FitsZoomed(base::Size size);
// Names Dst and target as NameOutput does, without looking at the disk.
void PredictTarget(CutFile& file);
Step AskForFrame(CutFile& file);  // ManualCutMode
Step FindRectangle(CutFile& file);
// Computes the rectangle in a picture of W x H, with the geometry as it is now: the manual frame has written the
// margins since the file was begun.
void PlaceRectangle(CutFile& file, Pass pass);

// --- The cut.
Step MakeCut(CutFile& file);
// A load that fails here is counted as the run's failure, or only told in the row.
enum class LoadFailure { Counted, Told };
Step CutInMemory(CutFile& file, LoadFailure loadFailure);
Step CutFileToFile(CutFile& file);
// By how much ChRotateCut turns the picture, degrees counter-clockwise; 0 if it does not.
double AngleOfCut(const CutFile& file);
inline constexpr int kThresholdLevel = 128;  // of ChToWB
// The size to which a cut of that size is scaled; nothing if it stays as it is.
std::optional<base::Size> SizeAfterCut(const CutFile& file, base::Size cut);
// Whether only the resolution is to change, which a crop stamps on the way.
bool OnlyOwnDpi(const CutFile& file);
// The crop that MakeCut asks for if the picture is not held in memory: PlainCrop, for a gif into a work file.
imaging::CropRequest FileCrop(const CutFile& file);
// For a rectangle without area; a source that could not be measured is the reason where there is one.
Step FailEmptyRectangle(CutFile& file);
// Work, which it disposes of, as a file at target.
host::Status SaveWork(CutFile& file);
// A crop of the source to target, from the parts of file that are known before it is begun: names, size and
// rectangle.
imaging::CropRequest PlainCrop(const CutFile& file);
// Saves a crop as its encoder wants it, asking about a full disk.
host::Status SaveCrop(Program& program, const imaging::CropRequest& request);
// Without ChOver an output may still fall on its own source, when it lies in the output folder: a copy "<source>.bak"
// stays beside it.
host::Status KeepReplacedSource(CutFile& file);
// True when the cut must hold the picture in memory. A cut that is to be split stays in Work.
bool NeedsMemory(const CutFile& file);

// --- Behind the cut.
Step StopHere(CutFile& file);
Step SplitCut(CutFile& file);  // ChSplit: each piece goes through the steps from here on as a cut of its own
std::size_t PieceCount(const CutSettings& options);
// What its piece of that number (from 1) is called.
std::string PieceName(const CutFile& file, std::size_t number);
Step AddBorder(CutFile& file);  // ChAddBoard
// Whether the cut picture was turned and not turned back.
enum class Turned { No, Yes };
// The border that it asks for, around the latest state of the output or, without a cut, around the source.
imaging::BorderRequest BorderFor(CutFile& file, const std::string& destination, Turned turned);
// ChAddToSize makes the border white, in the window too.
void WhitenPaddedBoard(CutFile& file);
Step ConvertToCmyk(CutFile& file);  // ToCmyk
Step CopyExif(CutFile& file);       // KeepExif
Step MakePdf(CutFile& file);
Step Deliver(CutFile& file);       // a finished work file over the output
Step RemoveSource(CutFile& file);  // ChOver: a source whose output has another name
Step PlaceOnSheet(CutFile& file);  // ChCutAndArray

}  // namespace quillon::job
