// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "imaging/services.h"
#include "job/cut/cut_file.h"
#include "job/cut/cut_outcome.h"

// The steps that are executed for one file, in their order.
namespace quillon::job {

// --- Before the run.
// Returns the windows with options that are hidden during a cut. A manual cut keeps the preview.
std::vector<std::string> WindowsHiddenInCut(const Flags& flags);

// --- Before the cut.
Step MeasureSource(CutFile& file);
Step PassOverSmall(CutFile& file);    // ChFilter
Step KeepPages(CutFile& file);        // fails if a source of several pages would be replaced by its first one
Step NoteAlpha(CutFile& file);        // notes that a border makes a transparent png opaque
Step KeepExifSource(CutFile& file);   // copies a source that will be overwritten, because its Exif is needed later
Step PassOverFolder(CutFile& file);   // ChOmitFolds
Step ZoomBeforeCut(CutFile& file);    // ChZoomAndCut
Step RotateBeforeCut(CutFile& file);  // CmbRotate
Step NameOutput(CutFile& file);       // sets Dst and target, creates the folder
// From now on a foreign file that has the name of the output goes to the trash if it is replaced.
void TrashReplaced(CutFile& file, const std::string& output);
// Fails if the scaled picture does not fit into memory. The later steps load it as a whole, so that minutes of scaling
// would be lost.
host::Status FitsZoomed(base::Size size);
// Sets Dst and target as NameOutput does, without access to the disk.
void PredictTarget(CutFile& file);
Step AskForFrame(CutFile& file);  // ManualCutMode
Step FindRectangle(CutFile& file);
// Computes the rectangle in a picture of W x H from the present geometry. It may differ from that of the settings,
// because the manual frame writes the margins.
void PlaceRectangle(CutFile& file, Pass pass);

// --- The cut.
Step MakeCut(CutFile& file);
// Whether a load that fails is added to CutRun::failed, or only reported in the row.
enum class LoadFailure { Counted, Reported };
Step CutInMemory(CutFile& file, LoadFailure loadFailure);
Step CutFileToFile(CutFile& file);
inline constexpr int kThresholdLevel = 128;  // of ChToWB
// Returns whether the resolution is the only effect. A crop from file to file can set it.
bool OnlyOwnDpi(const CutFile& file);
// Returns the crop that MakeCut makes unless the picture is held in memory: PlainCrop, and for a gif source into a work
// file.
imaging::CropRequest FileCrop(const CutFile& file);
// Returns whether the rectangle holds no pixel of the picture: it has no area, or it is wholly outside. What is outside
// cannot be said of a picture that could not be measured.
inline bool NothingToCut(const CutFile& file) { return !NothingToCutText(file.rect, {file.W, file.H}).empty(); }
// Fails such a file. The reason is that of the measurement, if the source could not be measured.
Step FailNothingToCut(CutFile& file);
// Returns whether another way to the same output would fail too: the disk is full or unresponsive, or the run is
// stopped.
bool EndsFile(const host::Status& failure);
// Saves Work under target and disposes of it.
host::Status SaveWork(CutFile& file);
// Returns the crop of the source to target. Reads only the names, the size and the rectangle of file.
imaging::CropRequest PlainCrop(const CutFile& file);
// Makes a crop by the operation of its encoder, and asks about a full disk.
host::Status SaveCrop(Program& program, const imaging::CropRequest& request);
// Copies the source to "<source>.bak" if the output replaces it without ChOver, which happens if the source is in the
// output folder.
host::Status KeepReplacedSource(CutFile& file);
// Returns whether the cut needs the picture in memory. A cut that will be split remains in Work.
bool NeedsMemory(const CutFile& file);

// --- After the cut.
Step StopHere(CutFile& file);
// ChSplit: makes each piece a cut of its own from the next step on, and ends the file.
Step SplitCut(CutFile& file);
std::size_t PieceCount(const CutSettings& options);
// Returns the name of the piece with that number, counted from 1.
std::string PieceName(const CutFile& file, std::size_t number);
Step AddBorder(CutFile& file);  // ChAddBoard
// Returns the picture that gets the border: latestFile, or the source if nothing was cut.
const std::string& BorderSource(const CutFile& file);
// Returns the border that AddBorder draws around BorderSource.
imaging::BorderRequest BorderFor(CutFile& file, const std::string& destination, Turned turned);
// Makes the border white for ChAddToSize, also in the window.
void WhitenPaddedBoard(CutFile& file);
Step ConvertToCmyk(CutFile& file);  // ToCmyk
Step CopyExif(CutFile& file);       // KeepExif
Step MakePdf(CutFile& file);
Step Deliver(CutFile& file);       // copies the finished work file to the output
Step RemoveSource(CutFile& file);  // ChOver: discards a source whose output has another name
Step PlaceOnSheet(CutFile& file);  // ChCutAndArray

}  // namespace quillon::job
