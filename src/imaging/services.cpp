// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/services.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "host/files/files.h"
#include "imaging/crop/file_requests.h"
#include "imaging/crop/frame_requests.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/io/open_bytes.h"
#include "imaging/limits.h"
#include "imaging/measure/frame_count.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kLargestPreview = 6000;
constexpr std::size_t kSmallFile = std::size_t{256} << 10;  // bytes

Status WorkForPrefetch(const Prefetcher::Job& job, const host::Files& files, const Limits& limits) {
  // While other works run, more threads for one work would not make the whole faster.
  const int threads = job.alone ? 0 : 1;
  const PictureInput input{files, limits, {.stop = job.stop, .calls = &job.calls, .threads = threads}};
  return DoWork(job.work, input, {job.admit, job.output});
}

// Measures a picture by opening it.
Status MeasureByOpening(const host::Files& files, const std::string& path, const Limits& limits, ImageFacts& facts) {
  return Guarded(fault::DamagedPicture(), [&] {
    OpenedPicture opened;
    if (Status status = OpenPicture(files, path, limits, {}, opened); !status) return status;
    facts = {opened.original.width, opened.original.height, opened.tags.dpi};
    return Status::Ok();
  });
}

}  // namespace

Image::Image() = default;
Image::Image(std::unique_ptr<ImageData> data) : data_(std::move(data)) {}
Image::~Image() = default;
Image::Image(Image&&) noexcept = default;
Image& Image::operator=(Image&&) noexcept = default;

Status WriteContent(const std::string& content, Encoder encoder, host::Draft& draft) {
  Status status = draft.Write(content.data(), content.size());
  return status ? CheckOutput(encoder, draft) : status;
}

Services::Parts::Parts(host::Files& disk, const std::string& programFolder, host::DiskThread* onThread,
                       const Limits& bounds, Measurer::OtherKinds otherKinds)
    : files(disk),
      clipBoardPath(programFolder + "/" + kClipBoardLane),
      thread(onThread),
      limits(bounds),
      measurer(std::make_shared<Measurer>(
          disk,
          [&disk, bounds](const std::string& path, ImageFacts& facts) {
            return MeasureByOpening(disk, path, bounds, facts);
          },
          std::move(otherKinds))) {}

Status Services::Parts::Access::Save(const std::string& path, const std::function<Status(host::Draft&)>& fill) const {
  const auto guarded = [&](host::Draft& draft) { return Guarded(fault::NotSaved(), [&] { return fill(draft); }); };
  return files.Save(path, guarded, saving);
}

std::optional<host::FileFacts> Services::Parts::Access::Stat(const std::string& path) const {
  const host::DiskCalls::Scope scope(saving.calls);
  return files.Stat(path);
}

Status Services::Parts::Access::Check(const CropRequest& request) const {
  const host::DiskCalls::Scope scope(saving.calls);
  return CheckCrop(files, request, limits);
}

Status Services::Parts::Access::SaveCut(const CropRequest& request,
                                        const std::function<Status(host::Draft&)>& fill) const {
  return Save(request.destination, [&](host::Draft& draft) {
    Status filled = fill(draft);
    if (!filled) return filled;
    const std::optional<host::FileFacts> source = Stat(request.source);
    const std::optional<host::FileFacts> standing = Stat(request.destination);
    if (!source || !standing || !host::SameFile(*source, *standing)) return filled;
    return KeepBackup(files, request.source, saving);
  });
}

Status Services::Parts::Run(Operation operation, On on) {
  if (!thread || on == On::Caller) return operation({files, limits, {}, {}});
  return thread->Run([&disk = files, bounds = limits, operation = std::move(operation)](const auto& job) {
    return operation({disk, bounds, {.stop = job.stop, .calls = &job.calls}, job.Saving()});
  });
}

Services::Parts::On Services::Parts::WriterOf(const std::string& path, std::size_t bytes) const {
  const bool small = bytes <= kSmallFile && !files.Stat(path);
  return small && files.IsLocalDisk(base::SplitPath(path).folder) ? On::Caller : On::DiskThread;
}

Status Services::Parts::SavePicture(const Image& image, const std::string& path, const EncodeOptions& options) {
  if (image.Empty()) return fault::NoImage();
  return Run([picture = image.Data()->picture, path, options](const Access& access) {
    return access.Save(path,
                       [&](host::Draft& draft) { return EncodePicture(picture, options, access.Space(), draft); });
  });
}

Status Services::Parts::SaveCrop(const CropRequest& request, std::shared_ptr<const std::string> content) {
  const On writer = WriterOf(request.destination, content->size());
  const auto save = [request, content = std::move(content)](const Access& access) {
    if (Status status = access.Check(request); !status) return status;
    return access.SaveCut(request, [&](host::Draft& draft) { return WriteContent(*content, request.encoder, draft); });
  };
  return Run(save, writer);
}

Status Services::Parts::ChangeFrames(const CropRequest& request, FrameChange change) {
  return Run([request, change](const Access& access) {
    if (Status status = access.Check(request); !status) return status;
    return access.SaveCut(request, [&](host::Draft& draft) { return change(access.Input(), request, draft); });
  });
}

Prefetcher& Services::Parts::StartPrefetcher() {
  if (!prefetcher) {
    PrefetchLimits prefetchLimits;
    if (thread) prefetchLimits.seconds = thread->Hooks().seconds;
    if (thread) prefetchLimits.stopped = thread->Hooks().stopped;
    prefetcher = std::make_unique<Prefetcher>(
        files,
        [&disk = files, limits = limits](const Prefetcher::Job& job) { return WorkForPrefetch(job, disk, limits); },
        [measurer = measurer](const std::string& path) {
          ImageFacts facts;
          static_cast<void>(measurer->Measure(path, facts));
        },
        std::move(prefetchLimits));
  }
  return *prefetcher;
}

Services::Services(host::Files& files, const std::string& programFolder, host::DiskThread* thread, const Limits& limits,
                   Measurer::OtherKinds otherKinds)
    : parts_(std::make_unique<Parts>(files, programFolder, thread, limits, std::move(otherKinds))) {}

Services::~Services() = default;

// The library initialises itself at the first picture that needs it; plain JPEGs do not.
void Services::ImageWizardStartUp() {}

void Services::ImageWizardShutDown() { parts_->prefetcher.reset(); }

Status Services::ImageInfo(const std::string& path, ImageFacts& facts, Want want) {
  if (parts_->prefetcher) {
    if (Status waited = parts_->prefetcher->AwaitMeasure(path, parts_->Idle()); !waited) return waited;
  }
  if (parts_->measurer->Recall(path, facts, want)) return Status::Ok();
  const auto found = std::make_shared<ImageFacts>();
  // The whole measurement counts as one call, because only a disk can make it last that long.
  Status status = parts_->Run([measurer = parts_->measurer, path, want, found](const Parts::Access& access) {
    const host::DiskCalls::Scope scope(access.reading.calls);
    return measurer->Measure(path, *found, want, [&] { return !access.reading.stop.stop_requested(); });
  });
  if (status) facts = *found;
  return status;
}

Status Services::FramesIn(const std::string& path, int& frames) {
  const auto found = std::make_shared<int>(0);
  Status status = parts_->Run([path, found](const Parts::Access& access) {
    std::shared_ptr<Bytes> bytes;
    if (Status opened = OpenBytes(access.files, path, access.reading, bytes); !opened) return opened;
    return CountFrames(*bytes, *found);
  });
  if (status) frames = *found;
  return status;
}

Status Services::AlphaIn(const std::string& path, bool& alpha) {
  const auto found = std::make_shared<bool>(false);
  Status status = parts_->Run([path, found](const Parts::Access& access) {
    std::shared_ptr<Bytes> bytes;
    if (Status opened = OpenBytes(access.files, path, access.reading, bytes); !opened) return opened;
    *found = PngHasAlpha(*bytes);
    return Status::Ok();
  });
  if (status) alpha = *found;
  return status;
}

void Services::RememberSizes(std::size_t count) { parts_->measurer->Remember(count); }

Status Services::LoadImageFromFile(const std::string& path, Image& out) {
  const auto data = std::make_shared<std::unique_ptr<ImageData>>(std::make_unique<ImageData>());
  Status status = parts_->Run(
      [path, data](const Parts::Access& access) { return LoadPicture(access.Input(), path, (*data)->picture); });
  if (status) out = Image(std::move(*data));
  return status;
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

Status Services::SaveImageToBmpFile(const Image& image, const std::string& path, Orient orient) {
  return parts_->SavePicture(image, path, {.encoder = Encoder::Bmp, .orient = orient});
}

Status Services::SaveByType(Image& image, const std::string& path, const std::string& type,
                            const SaveOptions& options) {
  Status status = fault::UnknownType();
  if (const std::optional<Encoder> encoder = EncoderOfType(type)) {
    status =
        parts_->SavePicture(image, path, {*encoder, options.quality, options.blackWhite, options.exif, options.orient});
  }
  if (!status.DiskFull()) DisposeImage(image);
  return status;
}

Status Services::SaveByEncoder(const Image& image, const std::string& path, Encoder encoder, int quality,
                               Orient orient) {
  return parts_->SavePicture(image, path, {.encoder = encoder, .quality = quality, .orient = orient});
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

Status Services::CropToFile(const CropRequest& request) {
  std::optional<PrefetchedFiles> ready;
  if (Status waited = PopPrefetched({{request}}, ready); !waited) return waited;
  if (!ready) {
    return parts_->Run([request](const Parts::Access& access) {
      if (Status status = access.Check(request); !status) return status;
      return access.SaveCut(request, [&](host::Draft& draft) { return MakeCrop(access.Input(), request, draft); });
    });
  }
  return parts_->SaveCrop(request, std::make_shared<const std::string>(std::move(ready->front())));
}

CropRequest Services::AsGif(CropRequest request) {
  request.encoder = Encoder::Gif;
  request.alpha = Alpha::Kept;
  return request;
}

Status Services::CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay) {
  const CropRequest gif = AsGif(request);
  if (!overlay) return CropToFile(gif);
  return parts_->Run([gif, overlay = *overlay](const Parts::Access& access) {
    if (Status status = access.Check(gif); !status) return status;
    Picture cut;
    if (Status status = CropUnder(access.Input(), gif, overlay, cut); !status) return status;
    const EncodeOptions options{.encoder = gif.encoder};
    return access.SaveCut(gif, [&](host::Draft& draft) { return EncodePicture(cut, options, access.Space(), draft); });
  });
}

Status Services::CropFrames(const CropRequest& request) { return parts_->ChangeFrames(request, imaging::CropFrames); }

Status Services::PaintOverFrames(const CropRequest& request) {
  return parts_->ChangeFrames(request, imaging::PaintOverFrames);
}

Status Services::AddBoardToFile(const BorderRequest& request) {
  return parts_->Run([request](const Parts::Access& access) {
    Picture bordered;
    if (Status drawn = DrawBorder(access.Input(), request, bordered); !drawn) return drawn;
    return access.Save(request.destination,
                       [&](host::Draft& draft) { return EncodeBorder(bordered, request, access.Space(), draft); });
  });
}

Status Services::ZoomPic(const std::string& source, const std::string& destination, int width, int height, Exif exif) {
  const ZoomRequest request{source, destination, {width, height}, exif};
  if (Status fits = CheckZoom(request, parts_->limits); !fits) return fits;
  return parts_->Run([request](const Parts::Access& access) {
    return access.Save(request.destination,
                       [&](host::Draft& draft) { return MakeZoom(access.Input(), request, draft); });
  });
}

Status Services::LoadPreview(const std::string& path, base::Size limit, Preview& out) {
  const double across = std::clamp(limit.width, 1, kLargestPreview);
  const double down = std::clamp(limit.height, 1, kLargestPreview);
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = OpenPicture(parts_->files, path, parts_->limits, {}, opened); !open) return open;
    const base::Size whole = opened.original;
    const double scale = std::min({1.0, across / whole.width, down / whole.height});
    const auto side = [&](int pixels) { return std::max(1, static_cast<int>(std::floor(pixels * scale + 1e-9))); };
    const base::Size shown{side(whole.width), side(whole.height)};
    // Now that the size is known, a JPEG can be decoded to little more than what is shown.
    if (opened.format == Format::Jpeg && scale < 1) {
      if (Status open = OpenPicture(parts_->files, path, parts_->limits, shown, opened); !open) return open;
    }
    Picture small;
    if (Status take = ReadReduced(opened, small); !take) return take;
    small.pixels = Scaled(small.pixels, shown);
    small = Displayed(small);
    const VImage rgb = AsRgb(EightBit(Flattened(small.pixels, base::kWhite)));
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(rgb.write_to_memory(&size), g_free);
    const auto* from = static_cast<const unsigned char*>(bytes.get());
    out = {shown, whole, std::vector<unsigned char>(from, from + size)};
    return Status::Ok();
  });
  return ReadStatus(opened, status);
}

void Services::PlanWork(const std::vector<FileWork>& upcoming) { parts_->StartPrefetcher().PlanWork(upcoming); }

void Services::PlanMeasures(std::vector<std::string> upcoming) {
  parts_->StartPrefetcher().PlanMeasures(std::move(upcoming));
}

Status Services::PopPrefetched(const FileWork& work, std::optional<PrefetchedFiles>& files) {
  files.reset();
  return parts_->prefetcher ? parts_->prefetcher->Pop(work, parts_->Idle(), files) : Status::Ok();
}

Status Services::SavePrefetched(std::shared_ptr<const std::string> content, const std::string& path, Encoder encoder) {
  const Parts::On writer = parts_->WriterOf(path, content->size());
  const auto save = [content = std::move(content), path, encoder](const Parts::Access& access) {
    return access.Save(path, [&](host::Draft& draft) { return WriteContent(*content, encoder, draft); });
  };
  return parts_->Run(save, writer);
}

}  // namespace quillon::imaging
