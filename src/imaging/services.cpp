// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/services.h"

#include <utility>

#include "base/path_text.h"
#include "imaging/crop/file_work.h"
#include "imaging/limits.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

Status WorkForPrefetch(const Prefetcher::Job& job, const host::Files& files, const Limits& limits) {
  // Beside others, threads of its own would only be in their way.
  const int threads = job.alone ? 0 : 1;
  const PictureInput input{files, limits, {.stop = job.stop, .reads = &job.reads, .threads = threads}};
  return DoWork(job.work, input, {job.admit, job.output});
}

// Sizes of pictures that have to be opened for it.
Status MeasureByOpening(const host::Files& files, const std::string& path, const Limits& limits, ImageFacts& facts) {
  return Guarded(fault::DamagedPicture(), [&] {
    OpenedPicture opened;
    if (Status status = OpenPicture(files, path, limits, {}, opened); !status) return status;
    facts = {opened.original.width, opened.original.height, opened.tags.dpi};
    return Status::Ok();
  });
}

}  // namespace

Status WriteContent(const std::string& content, Encoder encoder, host::Draft& draft) {
  Status status = draft.Write(content.data(), content.size());
  return status ? CheckOutput(encoder, draft) : status;
}

Services::Parts::Parts(host::Files& disk, const std::string& programFolder, WaitHooks waits, const Limits& bounds)
    : files(disk),
      clipBoardPath(programFolder + "/" + kClipBoardLane),
      hooks(std::move(waits)),
      limits(bounds),
      measurer(std::make_shared<Measurer>(
          disk,
          [&disk, bounds](const std::string& path, ImageFacts& facts) {
            return MeasureByOpening(disk, path, bounds, facts);
          },
          hooks.otherKinds)) {}

Status Services::Parts::Save(const std::string& path, const std::function<Status(host::Draft&)>& fill) {
  return files.Save(path, [&](host::Draft& draft) { return Guarded(fault::NotSaved(), [&] { return fill(draft); }); });
}

Status Services::Parts::SavePicture(const Image& image, const std::string& path, const EncodeOptions& options) {
  if (image.Empty()) return fault::NoImage();
  return Save(path, [&](host::Draft& draft) { return EncodePicture(image.Data()->picture, options, draft); });
}

Prefetcher& Services::Parts::StartPrefetcher() {
  if (!prefetcher) {
    Prefetcher::Bounds bounds;
    bounds.seconds = hooks.seconds;
    bounds.stopped = hooks.stopped;
    prefetcher = std::make_unique<Prefetcher>(
        files,
        [&disk = files, limits = limits](const Prefetcher::Job& job) { return WorkForPrefetch(job, disk, limits); },
        [measurer = measurer](const std::string& path) {
          ImageFacts facts;
          static_cast<void>(measurer->Measure(path, facts));
        },
        std::move(bounds));
  }
  return *prefetcher;
}

Services::Services(host::Files& files, const std::string& programFolder, WaitHooks hooks, const Limits& limits)
    : parts_(std::make_unique<Parts>(files, programFolder, std::move(hooks), limits)) {}

Services::~Services() = default;

// The library sets itself up when the first picture needs it; a run over plain JPEGs never does.
void Services::ImageWizardStartUp() {}

void Services::ImageWizardShutDown() { parts_->prefetcher.reset(); }

Status Services::ImageInfo(const std::string& path, ImageFacts& facts, Want want) {
  if (parts_->prefetcher) {
    if (Status waited = parts_->prefetcher->AwaitMeasure(path, parts_->hooks.idle); !waited) return waited;
  }
  return parts_->measurer->Measure(path, facts, want, [&hooks = parts_->hooks] {
    if (hooks.idle) hooks.idle();
    return !hooks.stopped || !hooks.stopped();
  });
}

void Services::RememberSizes(std::size_t count) { parts_->measurer->Remember(count); }

Status Services::LoadImageFromFile(const std::string& path, Image& out) {
  auto data = std::make_unique<ImageData>();
  if (Status status = LoadPicture(parts_->Input(), path, data->picture); !status) return status;
  out = Image(std::move(data));
  return Status::Ok();
}

Status Services::SaveImageToJpgFile(const Image& image, const std::string& path, int quality, Exif exif) {
  return parts_->SavePicture(image, path, {.encoder = Encoder::Jpeg, .quality = quality, .exif = exif});
}

Status Services::SaveImageToPngFile(const Image& image, const std::string& path) {
  return parts_->SavePicture(image, path, {.encoder = Encoder::Png});
}

Status Services::SaveImageToGifFile(const Image& image, const std::string& path) {
  return parts_->SavePicture(image, path, {.encoder = Encoder::Gif});
}

Status Services::SaveImageToTifFile(const Image& image, const std::string& path, int compression) {
  constexpr int kGroup4 = 4;
  return parts_->SavePicture(image, path, {.encoder = Encoder::Tiff, .blackWhite = compression == kGroup4});
}

Status Services::SaveImageToBmpFile(const Image& image, const std::string& path) {
  return parts_->SavePicture(image, path, {.encoder = Encoder::Bmp});
}

Status Services::SaveByType(Image& image, const std::string& path, const std::string& type,
                            const SaveOptions& options) {
  Status status = fault::UnknownType();
  if (const std::optional<Encoder> encoder = EncoderOfType(type)) {
    status = parts_->SavePicture(image, path, {*encoder, options.quality, options.blackWhite, options.exif});
  }
  if (!status.DiskFull()) DisposeImage(image);
  return status;
}

Status Services::SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality) {
  return parts_->SavePicture(image, path, {.encoder = encoder, .quality = quality});
}

Status Services::SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality,
                               double angle) {
  Image turned;
  if (Status status = CloneImage(image, turned); !status) return status;
  if (angle != 0) {
    if (Status status = RotateImage(turned, angle, base::kWhite); !status) return status;
  }
  return SaveByEncoder(turned, base::WithoutPsd(path), encoder, quality);
}

void Services::PlanWork(const std::vector<FileWork>& upcoming) { parts_->StartPrefetcher().PlanWork(upcoming); }

void Services::PlanMeasures(std::vector<std::string> upcoming) {
  parts_->StartPrefetcher().PlanMeasures(std::move(upcoming));
}

Status Services::PopPrefetched(const FileWork& work, std::optional<PrefetchedFiles>& files) {
  files.reset();
  return parts_->prefetcher ? parts_->prefetcher->Pop(work, parts_->hooks.idle, files) : Status::Ok();
}

Status Services::SavePrefetched(const std::string& content, const std::string& path, Encoder encoder) {
  return parts_->Save(path, [&](host::Draft& draft) { return WriteContent(content, encoder, draft); });
}

}  // namespace quillon::imaging
