// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <string>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "job/cut/conversions.h"
#include "job/cut/cut_steps.h"
#include "job/settings/lists.h"
#include "job/work_files.h"
#include "tools/keys.h"

namespace quillon::job {
namespace {

using host::Status;

BoardResolution ResolutionFor(CutFile& file) {
  const CutSettings& options = file.settings;
  const bool fixedCut = options.geometry.ChFixCut && !options.frameOnly;
  imaging::ImageFacts facts;
  // A source that cannot be measured counts as one without a resolution.
  if (!fixedCut) static_cast<void>(file.program.images.ImageInfo(file.listedPath, facts, imaging::Want::SizeAndDpi));
  return ResolutionOfBorder(options, facts.dpi, file.program.flags.ScreenDpi);
}

// Adds the size of the canvas to the reason if the canvas is too large.
Status OnCanvas(base::Size size, Status status) {
  if (status.GetProblem() != host::Problem::TooLarge) return status;
  return {host::Problem::TooLarge, "加上边框后的画布为 " + std::to_string(size.width) + "x" +
                                       std::to_string(size.height) + " 像素，超过上限：" + status.Why()};
}

Status DrawBorder(CutFile& file, const std::string& destination) {
  const bool turned = file.RestoreAngle != 0 || file.program.flags.ImageRotated;
  const imaging::BorderRequest request = BorderFor(file, destination, turned ? Turned::Yes : Turned::No);
  file.latestSize = request.total;
  return OnCanvas(request.total,
                  file.program.saver.Save(destination, [&] { return file.program.images.AddBoardToFile(request); }));
}

// Handles frame-only with ChAddToSize: the whole picture is fitted and centred on white.
Status PadToSize(CutFile& file, const std::string& destination) {
  imaging::Services& images = file.program.images;
  const CutSettings& options = file.settings;
  imaging::Image picture;
  imaging::Image canvas;
  if (Status loaded = images.LoadImageFromFile(file.Src, picture); !loaded) return loaded;
  const base::Size size{images.GetImageWidth(picture), images.GetImageHeight(picture)};
  const Fit fit = FitToSize(size, options.geometry.FixW, options.geometry.FixH);
  file.latestSize = {options.geometry.FixW, options.geometry.FixH};
  if (Status made = images.NewCanvas(file.latestSize, base::kWhite, canvas); !made)
    return OnCanvas(file.latestSize, made);
  const base::Rect place{fit.offsetX, fit.offsetY, fit.FitW, fit.FitH};
  if (Status drawn = images.DrawImage(canvas, picture, place); !drawn) return drawn;
  images.CopyTags(canvas, picture);
  images.SetImageResolution(canvas, options.dpi);
  const imaging::SaveOptions save{options.quality, options.blackWhite, file.ExifWish()};
  return file.program.saver.Save(
      destination, [&] { return images.SaveByType(canvas, destination, base::ToLowerAscii(file.OutExt), save); });
}

}  // namespace

Step StopHere(CutFile& file) {
  file.program.host.pump.Turn();
  const bool unfinished = file.BorderFollows() || file.settings.split || file.settings.toCmyk || file.run.pdf;
  return file.program.flags.StopRequested && unfinished ? Fail(file, "已停止，未处理完") : Step::Next;
}

imaging::BorderRequest BorderFor(CutFile& file, const std::string& destination, Turned turned) {
  const CutSettings& options = file.settings;
  const BoardResolution resolution = ResolutionFor(file);
  imaging::BorderRequest request;
  request.source = BorderSource(file);
  request.destination = destination;
  request.image = options.frameOnly ? base::Size{file.W, file.H} : file.latestSize;
  request.quality = options.quality;
  request.dpi = options.dpi;
  request.colour = options.boardColour;
  request.exif = file.ExifWish();
  const bool tagLost = !options.frameOnly && !imaging::StoresOrientation(imaging::EncoderFor(file.OutExt));
  if (tagLost && turned == Turned::No) request.tagSource = file.listedPath;
  PlaceInBorder(options, BoardPixels(options.boardMm, resolution.dpi, resolution.k), turned, request);
  return request;
}

const std::string& BorderSource(const CutFile& file) { return file.settings.frameOnly ? file.Src : file.latestFile; }

void WhitenPaddedBoard(CutFile& file) {
  if (!file.settings.padToSize) return;
  file.program.fBaseOpt.PBoardColor.Set(base::kWhite);
  file.settings.boardColour = base::kWhite;
}

Step AddBorder(CutFile& file) {
  const CutSettings& options = file.settings;
  WhitenPaddedBoard(file);
  if (!options.addBoard) return options.frameOnly ? Fail(file, kNoBorderText) : Step::Next;
  file.program.host.pump.Turn();
  const std::string bordered = file.WorkFileBeside(work_files::kResultStem, BorderSource(file));
  // Removed first, so that the save creates a file and does not wait for a sync.
  (void)file.program.host.files.RemoveOwn(bordered);
  const bool pads = options.frameOnly && options.padToSize;
  const Status status = pads ? PadToSize(file, bordered) : DrawBorder(file, bordered);
  if (!status) return Fail(file, status);
  file.latestFile = bordered;
  file.RestoreAngle = 0;
  file.program.flags.ImageRotated = false;
  return Step::Next;
}

Step ConvertToCmyk(CutFile& file) {
  if (!file.settings.toCmyk) return Step::Next;
  if (const Status usable = CheckCmykProfiles(file.program); !usable) return Fail(file, usable);
  const Status converted = WorkToCmyk(file.program, file.latestFile, file.result.why);
  return converted ? Step::Next : Fail(file, converted);
}

Step CopyExif(CutFile& file) {
  const bool wanted = file.settings.keepExif && !file.run.OnBackSide() && file.program.outputTools;
  if (wanted) CopyExifToWork(file.program, file.exifSource, file.latestFile, file.result.why);
  return Step::Next;
}

Step MakePdf(CutFile& file) {
  if (!file.run.pdf) return Step::Next;
  const Status made = WorkToPdf(file.program, file.latestFile);
  return made ? Step::Next : Fail(file, made);
}

Step Deliver(CutFile& file) {
  file.result.output = ResultPath(file);
  if (file.latestFile == file.result.output) return Step::Next;
  // A file that helpers have changed is copied, so that the program itself writes the output.
  const char* title = file.ConversionFollows() ? tools::kTitle : host::kBoxTitle;
  const Status copied = DeliverWork(file.program, file.latestFile, file.result.output, title);
  return copied ? Step::Next : Fail(file, copied);
}

// A result with another name replaces its source too. If one of them cannot be read now, they may be one file, and the
// source stays.
Step RemoveSource(CutFile& file) {
  const auto output = file.program.host.files.Stat(file.result.output);
  const auto source = file.program.host.files.Stat(file.listedPath);
  const bool beside = output && source && !host::SameFile(*output, *source);
  if (file.settings.over && beside && !file.run.OnBackSide()) {
    file.run.ledger.DiscardAtEnd({file.row, file.listedPath, {file.result.output}});
  }
  return Step::Next;
}

Step PlaceOnSheet(CutFile& file) {
  if (file.run.withArray) file.program.sheets->Place(file.result.output);
  return Step::Next;
}

}  // namespace quillon::job
