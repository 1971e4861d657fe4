// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "job/cut_steps.h"
#include "job/presets.h"

namespace quillon::job {
namespace {

using host::Status;

struct Resolution {
  int dpi = 0;   // at which millimetres are counted
  double k = 1;  // from there to the output's
};

// With a fixed cut the border has the output's resolution from the start; otherwise the source's, or the screen's where
// the source tells none.
Resolution BorderResolution(CutFile& file) {
  const CutOptions& options = file.options;
  const int screen = file.program.flags.ScreenDpi;
  if (options.fixedSize && !options.frameOnly) return {options.dpi > 0 ? options.dpi : screen, 1};
  imaging::ImageFacts facts;
  facts.dpi = 1;
  if (!file.program.images.ImageInfo(file.listed, facts)) facts.dpi = 0;
  const int dpi = facts.dpi > 0 ? facts.dpi : screen;
  return {dpi, options.dpi > 0 && dpi > 0 ? static_cast<double>(options.dpi) / dpi : 1};
}

void PlaceFit(imaging::BorderRequest& request, base::Size inner, int left, int top) {
  const Fit fit = FitToSize(request.image, inner.width, inner.height);
  request.offsetX = left + fit.offsetX;
  request.offsetY = top + fit.offsetY;
  request.drawn = {fit.FitW, fit.FitH};
}

void PlaceWhole(imaging::BorderRequest& request, const Board& board) {
  const base::Size image = request.image;
  request.total = {image.width + board.left + board.right, image.height + board.top + board.bottom};
  request.offsetX = board.left;
  request.offsetY = board.top;
  request.drawn = image;
}

// Where the picture lies in its border. A turned picture of presets 3 and 4 lies across, and without ChMode1 its border
// is turned with it.
void PlacePicture(const CutFile& file, const Board& board, imaging::BorderRequest& request) {
  const CutOptions& options = file.options;
  if (options.frameOnly || !options.fixedSize) {
    PlaceWhole(request, board);
    return;
  }
  const bool turned = file.RestoreAngle != 0 || file.program.flags.ImageRotated;
  if (turned && (options.preset == kPresetC || options.preset == kPresetD)) {
    const Extend extend = options.extendRight ? Extend::Right : Extend::Bottom;
    request.total = ExtendedSize(extend, options.FixW, options.FixH, board);
    const bool right = extend == Extend::Right;
    PlaceFit(request, {options.FixH, options.FixW}, right ? board.left : board.top, right ? board.top : board.left);
    return;
  }
  request.total = {options.FixW + board.left + board.right, options.FixH + board.top + board.bottom};
  PlaceFit(request, {options.FixW, options.FixH}, board.left, board.top);
}

Status DrawBorder(CutFile& file, const std::string& destination) {
  const CutOptions& options = file.options;
  const Resolution resolution = BorderResolution(file);
  imaging::BorderRequest request;
  request.source = options.frameOnly ? file.Src : file.made;
  request.destination = destination;
  request.image = options.frameOnly ? base::Size{file.W, file.H} : file.madeSize;
  request.quality = options.quality;
  request.dpi = options.dpi;
  request.colour = options.boardColour;
  request.exif = file.ExifWish();
  PlacePicture(file, BoardPixels(options.boardMm, resolution.dpi, resolution.k), request);
  file.madeSize = request.total;
  return file.program.images.AddBoardToFile(request);
}

// Frame-only with ChAddToSize: the whole picture, fitted and centred on white.
Status PadToSize(CutFile& file, const std::string& destination) {
  imaging::Services& images = file.program.images;
  const CutOptions& options = file.options;
  imaging::Image picture;
  imaging::Image canvas;
  if (Status loaded = images.LoadImageFromFile(file.Src, picture); !loaded) return loaded;
  const base::Size size{images.GetImageWidth(picture), images.GetImageHeight(picture)};
  const Fit fit = FitToSize(size, options.FixW, options.FixH);
  if (Status made = images.NewCanvas({options.FixW, options.FixH}, base::kWhite, canvas); !made) return made;
  const base::Rect place{fit.offsetX, fit.offsetY, fit.FitW, fit.FitH};
  if (Status drawn = images.DrawImage(canvas, picture, place); !drawn) return drawn;
  images.TakeTags(canvas, picture);
  images.SetImageResolution(canvas, options.dpi);
  file.madeSize = {options.FixW, options.FixH};
  return images.SaveByType(canvas, destination, base::ToLowerAscii(file.OutExt),
                           {options.quality, options.blackWhite, file.ExifWish()});
}

}  // namespace

Step AddBorder(CutFile& file) {
  CutOptions& options = file.options;
  if (!options.addBoard) {
    return options.frameOnly ? Fail(file, "仅边框模式没有启用“裁剪后加边框”，没有输出") : Step::Next;
  }
  if (options.padToSize) {
    file.program.fBaseOpt.PBoardColor.Set(base::kWhite);
    options.boardColour = base::kWhite;
  }
  file.program.host.pump.Turn();
  const std::string bordered = file.WorkFile("Tmp2");
  // Gone at the start, so that the save is a fresh one and need not wait for the disk.
  (void)file.program.host.files.RemoveOwn(bordered);
  const bool pads = options.frameOnly && options.padToSize;
  const Status status = pads ? PadToSize(file, bordered) : DrawBorder(file, bordered);
  if (!status) return Fail(file, status);
  file.made = bordered;
  file.RestoreAngle = 0;
  file.program.flags.ImageRotated = false;
  return Step::Next;
}

}  // namespace quillon::job
