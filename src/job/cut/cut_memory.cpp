// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <utility>

#include "base/path_text.h"
#include "job/cut/cut_steps.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

using host::Status;

// Loads the picture into Work unless an earlier step has turned it there. After the manual step Src is the picture on
// show.
Status LoadWork(CutFile& file) {
  if (file.Work) return Status::Ok();
  if (file.settings.manual) return file.program.manualFrame->ClonePicture(file.Work);
  return file.program.images.LoadImageFromFile(file.Src, file.Work);
}

base::Size SizeOf(const CutFile& file) {
  const imaging::Services& images = file.program.images;
  return {images.GetImageWidth(file.Work), images.GetImageHeight(file.Work)};
}

// Applies ChRotateCut to a picture that no earlier step has turned.
Status TurnByRule(CutFile& file) {
  const bool turnedBefore = file.program.flags.ImageRotated;
  const double angle = turnedBefore ? 0 : AngleOfCut(file.settings, file.RestoreAngle, {file.W, file.H});
  if (angle == 0) return Status::Ok();
  if (Status rotated = file.program.images.RotateImage(file.Work, angle, base::kWhite); !rotated) return rotated;
  const base::Size size = SizeOf(file);
  file.W = size.width;
  file.H = size.height;
  file.RestoreAngle = -angle;
  file.program.flags.ImageRotated = true;
  PlaceRectangle(file, Pass::AfterRotation);
  return Status::Ok();
}

Status Recolour(CutFile& file) {
  imaging::Services& images = file.program.images;
  Status status;
  if (file.settings.toGray) status = images.ConvertImageToGrayMode(file.Work);
  if (status && file.settings.blackWhite) status = images.Threshold(file.Work, kThresholdLevel);
  if (status && file.settings.invert) status = images.Invert(file.Work);
  return status;
}

Status Restore(CutFile& file) {
  const double angle = file.RestoreAngle;
  if (angle == 0) return Status::Ok();
  if (file.run.withArray) file.RestoreAngle = 0;
  if (file.run.withArray || !file.settings.restore) return Status::Ok();
  file.RestoreAngle = 0;
  file.program.flags.ImageRotated = false;
  imaging::Services& images = file.program.images;
  if (Status back = images.RotateImage(file.Work, angle, file.settings.boardColour); !back) return back;
  // A source that only a helper can read has no orientation.
  const Status tagged = images.CopyOrientation(file.Work, file.listedPath);
  return EndsFile(tagged) ? tagged : Status::Ok();
}

Status ZoomAfterCut(CutFile& file) {
  const auto size = SizeAfterCut(file.settings, SizeOf(file));
  return size ? file.program.images.ResampleImage(file.Work, size->width, size->height) : Status::Ok();
}

// Makes the plain crop. The encoder decides the type, also for a gif.
Status CropAsNamed(CutFile& file) {
  const imaging::CropRequest request = PlainCrop(file);
  return file.program.saver.Save(request.destination, [&] { return file.program.images.CropToFile(request); });
}

// The last attempt after two failed saves: a crop without the effects, named after the folder of the source.
Step Rescue(CutFile& file, const Status& failure) {
  const CutSettings& options = file.settings;
  if (file.target != file.Dst) return Fail(file, failure);
  const std::string name =
      MakeOutputName(file.program.host.files, file.listedPath, options.outFolder,
                     options.keepFolders ? KeepFolders::Yes : KeepFolders::No,
                     options.over ? Overwrite::Yes : Overwrite::No, options.outType, options.extensionCase);
  if (file.run.ledger.IsOtherSource(name, file.listedPath)) return Fail(file, failure);
  const auto rescued = file.run.ledger.PlaceFor(file.listedPath, name);
  if (!rescued) return Fail(file, failure);
  TrashReplaced(file, *rescued);
  const std::string named = std::exchange(file.Dst, *rescued);
  file.target = *rescued;
  if (!KeepReplacedSource(file) || !CropAsNamed(file)) {
    file.Dst = named;
    return Fail(file, failure);
  }
  file.latestFile = file.target;
  file.latestSize = {file.rect.width, file.rect.height};
  return Step::Next;
}

// Cuts by means of a bitmap on disk, if memory cannot hold the cut beside the picture.
Status CutThroughBitmap(CutFile& file) {
  imaging::Services& images = file.program.images;
  images.SetImageResolution(file.Work, file.settings.dpi);
  const std::string bitmap = file.program.AppPath(work_files::kBitmap);
  const host::Saver& saver = file.program.saver;
  constexpr imaging::Orient kByTagSource = imaging::Orient::Defer;
  Status saved = saver.Save(bitmap, [&] { return images.SaveImageToBmpFile(file.Work, bitmap, kByTagSource); });
  if (!saved) return saved;
  images.DisposeImage(file.Work);
  imaging::CropRequest request = PlainCrop(file);
  request.source = bitmap;
  request.tagSource = file.exifSource;
  request.upright = file.RestoreAngle != 0 || file.program.flags.ImageRotated;
  if (Status cut = SaveCrop(file.program, request); !cut) return cut;
  file.latestSize = {file.rect.width, file.rect.height};
  return Status::Ok();
}

}  // namespace

bool EndsFile(const Status& failure) { return failure.DiskFull() || failure.GetProblem() == host::Problem::Stopped; }

Step FailNothingToCut(CutFile& file) {
  if (!file.measured) return Fail(file, file.measured);
  return Fail(file, NothingToCutText(file.rect, {file.W, file.H}));
}

Status SaveWork(CutFile& file) {
  imaging::Services& images = file.program.images;
  images.SetImageResolution(file.Work, file.settings.dpi);
  file.latestSize = SizeOf(file);
  if (Status kept = KeepReplacedSource(file); !kept) return kept;
  // SaveByType disposes of the picture, and a second attempt needs it again.
  imaging::Image second;
  const bool again = static_cast<bool>(images.CloneImage(file.Work, second));
  const imaging::SaveOptions save{file.CutQuality(), file.settings.blackWhite, file.ExifWish(), file.OrientOfCut()};
  const host::Saver& saver = file.program.saver;
  const Status saved = saver.Save(
      file.target, [&] { return images.SaveByType(file.Work, file.target, base::ToLowerAscii(file.OutExt), save); });
  if (saved || EndsFile(saved) || !again) return saved;
  const imaging::Encoder encoder = imaging::EncoderFor(file.OutExt);
  const Status encoded = saver.Save(
      file.target, [&] { return images.SaveByEncoder(second, file.target, encoder, save.quality, save.orient); });
  return encoded || EndsFile(encoded) ? encoded : saved;
}

Step CutInMemory(CutFile& file, LoadFailure loadFailure) {
  imaging::Services& images = file.program.images;
  if (const Status loaded = LoadWork(file); !loaded) {
    if (loadFailure == LoadFailure::Counted) ++file.run.failed;
    return Fail(file, loaded);
  }
  if (loadFailure == LoadFailure::Counted) {
    if (const Status turned = TurnByRule(file); !turned) return Fail(file, turned);
    if (const Status recoloured = Recolour(file); !recoloured) return Fail(file, recoloured);
  }
  if (NothingToCut(file)) return FailNothingToCut(file);
  file.program.host.pump.Turn();
  if (const Status cut = images.CutImage(file.Work, file.rect); !cut) {
    if (file.settings.split) return Fail(file, cut);
    if (const Status saved = CutThroughBitmap(file); !saved) return Fail(file, saved);
    file.latestFile = file.target;
    return Step::Next;
  }
  if (const Status restored = Restore(file); !restored) return Fail(file, restored);
  if (const Status zoomed = ZoomAfterCut(file); !zoomed) return Fail(file, zoomed);
  if (file.settings.split) return Step::Next;
  file.program.host.pump.Turn();
  const Status saved = SaveWork(file);
  if (EndsFile(saved)) return Fail(file, saved);
  if (!saved) return Rescue(file, saved);
  file.latestFile = file.target;
  return Step::Next;
}

}  // namespace quillon::job
