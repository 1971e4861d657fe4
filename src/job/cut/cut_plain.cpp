// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "host/files/files.h"
#include "job/cut/cut_steps.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

std::string SourceExtension(const CutFile& file) { return base::SplitPath(file.Src).extension; }

// A crop that replaces its own source makes the backup by itself.
host::Status Crop(CutFile& file, const imaging::CropRequest& request) {
  host::Files& files = file.program.host.files;
  if (!files.SameFile(request.source, request.destination)) {
    if (host::Status kept = KeepReplacedSource(file); !kept) return kept;
  }
  // A work file of an earlier run may be removed: it is no result.
  if (request.destination != file.Dst) (void)files.RemoveOwn(request.destination);
  return SaveCrop(file.program, request);
}

Step AcceptCrop(CutFile& file) {
  file.latestFile = file.target;
  file.latestSize = {file.rect.width, file.rect.height};
  return Step::Next;
}

// Cuts a gif into a work file. If that fails, the gif is loaded and cut in memory.
Step CutGifSource(CutFile& file) {
  const imaging::CropRequest request = FileCrop(file);
  const host::Status cut = Crop(file, request);
  if (EndsFile(cut)) return Fail(file, cut);
  if (!cut) return CutInMemory(file, LoadFailure::Reported);
  if (file.target != request.destination) {
    const host::Status copied = file.program.saver.Deliver(request.destination, file.target);
    if (!copied) return Fail(file, copied);
  }
  return AcceptCrop(file);
}

}  // namespace

bool OnlyOwnDpi(const CutFile& file) {
  const CutSettings& options = file.settings;
  const bool pixels = options.rotateCut || options.zoomBefore || options.toGray || options.blackWhite || options.invert;
  const bool direct = !IsGif(SourceExtension(file)) && imaging::EncoderFor(file.OutExt) != imaging::Encoder::Gif;
  return options.ownDpi && !pixels && direct && !NeedsMemory(file) && !options.manual;
}

imaging::CropRequest FileCrop(const CutFile& file) {
  imaging::CropRequest request = PlainCrop(file);
  if (!EffectsApply(file.settings) && IsGif(SourceExtension(file)))
    request.destination = file.WorkFile(work_files::kCutStem);
  return request;
}

host::Status KeepReplacedSource(CutFile& file) {
  Program& program = file.program;
  if (file.settings.over || !program.host.files.SameFile(file.target, file.listedPath)) return host::Status::Ok();
  const auto keep = [&files = program.host.files, path = file.listedPath](const host::DiskThread::Job& job) {
    return host::KeepBackup(files, path, job.Saving());
  };
  return program.saver.Save(file.listedPath, [&] { return program.diskThread.Run(keep); });
}

host::Status SaveCrop(Program& program, const imaging::CropRequest& request) {
  imaging::Services& images = program.images;
  const bool gif = request.encoder == imaging::Encoder::Gif;
  return program.saver.Save(request.destination,
                            [&] { return gif ? images.CropToGif(request) : images.CropToFile(request); });
}

imaging::CropRequest PlainCrop(const CutFile& file) {
  imaging::CropRequest request;
  request.source = file.Src;
  request.destination = file.target;
  request.rect = file.rect;
  request.encoder = imaging::EncoderFor(file.OutExt);
  request.quality = file.CutQuality();
  request.dpi = file.settings.dpi;
  request.exif = file.ExifWish();
  if (request.encoder == imaging::Encoder::Png) {
    request.depth = imaging::Depth::Kept;
    // An overwritten picture must not lose its transparency. A border is drawn around an opaque one.
    if (file.settings.over && !file.BorderFollows()) request.alpha = imaging::Alpha::Kept;
  }
  request.orient = file.OrientOfCut();
  return request;
}

bool NeedsMemory(const CutFile& file) {
  const bool restores = file.RestoreAngle != 0 && file.settings.restore;
  const bool scales = file.settings.zoomAfter || file.settings.geometry.ScalesToExact();
  return file.turnedFirst || restores || file.settings.split || scales || IsPsd(SourceExtension(file));
}

Step CutFileToFile(CutFile& file) {
  if (NeedsMemory(file)) return CutInMemory(file, LoadFailure::Reported);
  if (NothingToCut(file)) return FailNothingToCut(file);
  if (IsGif(SourceExtension(file))) return CutGifSource(file);
  const host::Status cut = Crop(file, PlainCrop(file));
  return cut ? AcceptCrop(file) : Fail(file, cut);
}

Step MakeCut(CutFile& file) {
  if (file.settings.frameOnly) return Step::Next;
  file.program.host.pump.Turn();
  if (!EffectsApply(file.settings)) return CutFileToFile(file);
  if (OnlyOwnDpi(file) && !NothingToCut(file)) {
    const host::Status cut = Crop(file, PlainCrop(file));
    if (cut) return AcceptCrop(file);
    if (EndsFile(cut)) return Fail(file, cut);
  }
  return CutInMemory(file, LoadFailure::Counted);
}

}  // namespace quillon::job
