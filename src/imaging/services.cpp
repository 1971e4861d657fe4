// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/services.h"

#include <utility>

#include "base/path_text.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/limits.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

// Only what needs nothing but the JPEG path is done ahead.
Status CropForPrefetch(const Prefetcher::Job& job, const Limits& limits) {
  const CropRequest& request = job.request;
  if (!IsDirect(request)) return fault::UnreadKind();
  return CutJpeg(request.source, request.rect, request.quality, request.dpi, request.exif, limits, job.sink,
                 {.stop = job.stop, .admit = job.admit, .reads = &job.reads});
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

Services::Parts::Parts(host::Files& disk, const std::string& programFolder, WaitHooks waits, const Limits& bounds)
    : files(disk),
      clipBoardPath(programFolder + "/" + kClipBoardLane),
      hooks(std::move(waits)),
      limits(bounds),
      measurer(std::make_shared<Measurer>(disk, [&disk, bounds](const std::string& path, ImageFacts& facts) {
        return MeasureByOpening(disk, path, bounds, facts);
      })) {}

Status Services::Parts::Save(const std::string& path, const std::function<Status(host::Draft&)>& fill) {
  return files.Save(path, [&](host::Draft& draft) { return Guarded(fault::NotSaved(), [&] { return fill(draft); }); });
}

Status Services::Parts::SavePicture(const Image& image, const std::string& path, const EncodeOptions& options) {
  if (image.Empty()) return fault::NoImage();
  return Save(path, [&](host::Draft& draft) { return EncodePicture(image.Data()->picture, options, draft); });
}

Status Services::Parts::Load(const std::string& path, Picture& out) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = OpenPicture(files, path, limits, {}, opened); !open) return open;
    Picture picture;
    if (Status take = ReadWhole(opened, picture); !take) return take;
    if (Status hold = Materialize(picture.pixels); !hold) return hold;
    out = std::move(picture);
    return Status::Ok();
  });
  return ReadStatus(opened, status);
}

Status Services::Parts::Materialize(vips::VImage& pixels) {
  const int pixelBytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(pixels.get_image()));
  if (!WithinLimits(pixels.width(), pixels.height(), limits)) return fault::SidesTooLarge();
  if (!FitsMemory(pixels.width(), pixels.height(), pixelBytes, limits)) return fault::OutOfMemory();
  // In memory they no longer come in order.
  vips::VImage free = pixels;
  if (pixels.get_typeof(VIPS_META_SEQUENTIAL) != 0) {
    free = pixels.copy();
    free.remove(VIPS_META_SEQUENTIAL);
  }
  pixels = free.copy_memory();
  return Status::Ok();
}

Prefetcher& Services::Parts::StartPrefetcher() {
  if (!ahead) {
    Prefetcher::Bounds bounds;
    bounds.seconds = hooks.seconds;
    bounds.stopped = hooks.stopped;
    ahead = std::make_unique<Prefetcher>(
        files, [limits = limits](const Prefetcher::Job& job) { return CropForPrefetch(job, limits); },
        [measurer = measurer](const std::string& path) {
          ImageFacts facts;
          static_cast<void>(measurer->Measure(path, facts));
        },
        std::move(bounds));
  }
  return *ahead;
}

Services::Services(host::Files& files, const std::string& programFolder, WaitHooks hooks, const Limits& limits)
    : parts_(std::make_unique<Parts>(files, programFolder, std::move(hooks), limits)) {}

Services::~Services() = default;

// The library sets itself up when the first picture needs it; a run over plain JPEGs never does.
void Services::ImageWizardStartUp() {}

void Services::ImageWizardShutDown() { parts_->ahead.reset(); }

Status Services::ImageInfo(const std::string& path, ImageFacts& facts, Want want) {
  if (parts_->ahead) {
    if (Status waited = parts_->ahead->AwaitMeasure(path, parts_->hooks.idle); !waited) return waited;
  }
  return parts_->measurer->Measure(path, facts, want);
}

void Services::RememberSizes(std::size_t count) { parts_->measurer->Remember(count); }

Status Services::LoadImageFromFile(const std::string& path, Image& out) {
  auto data = std::make_unique<ImageData>();
  if (Status status = parts_->Load(path, data->picture); !status) return status;
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
  struct Known {
    const char* part;
    Encoder encoder;
  };
  constexpr Known kKnown[] = {{"jp", Encoder::Jpeg},
                              {"png", Encoder::Png},
                              {"gif", Encoder::Gif},
                              {"tif", Encoder::Tiff},
                              {"bmp", Encoder::Bmp}};
  Status status = fault::UnknownType();
  const std::string lower = base::ToLowerAscii(type);
  for (const Known& known : kKnown) {
    if (lower.find(known.part) == std::string::npos) continue;
    status = parts_->SavePicture(image, path, {known.encoder, options.quality, options.blackWhite, options.exif});
    break;
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

void Services::PlanCrops(const std::vector<CropRequest>& upcoming) { parts_->StartPrefetcher().PlanCrops(upcoming); }

void Services::PlanMeasures(std::vector<std::string> upcoming) {
  parts_->StartPrefetcher().PlanMeasures(std::move(upcoming));
}

}  // namespace quillon::imaging
