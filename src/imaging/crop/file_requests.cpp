// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/file_requests.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/path_text.h"
#include "base/rounding.h"
#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/crop/decoded_source.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/crop/png_requests.h"
#include "imaging/crop/work_memory.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using vips::VImage;

constexpr int kZoomQuality = 98;

Status Stopped() { return {Problem::Stopped, "已停止"}; }

Status Open(const PictureInput& input, const std::string& path, OpenedPicture& out) {
  return OpenPicture(input.files, path, input.limits, {}, out, input.control);
}

// Copies EXIF and orientation from the tagSource of the request, if that can be opened.
void CopyTags(const PictureInput& input, const CropRequest& request, PictureTags& tags) {
  if (!request.tagSource.empty()) {
    PictureTags named;
    if (ReadTags(input, request.tagSource, named)) {
      tags.exif = named.exif;
      tags.orientation = named.orientation;
    }
  }
  if (!request.upright) return;
  tags.exif = UprightExif(tags.exif);
  tags.orientation = 1;
}

Encoder EncoderOfPath(const std::string& path) { return EncoderFor(base::SplitPath(path).extension); }

base::Size DrawnSize(const BorderRequest& request) {
  return {base::R(request.drawn.width * request.scale), base::R(request.drawn.height * request.scale)};
}

Status CheckBorder(const BorderRequest& request, const Limits& limits) {
  const base::Size drawn = DrawnSize(request);
  const base::Size& total = request.total;
  if (drawn.Empty() || total.Empty()) return fault::NoSize();
  const bool fits = WithinLimits(drawn.width, drawn.height, limits) && WithinLimits(total.width, total.height, limits);
  return fits ? Status::Ok() : fault::SidesTooLarge();
}

}  // namespace

Status LoadPicture(const PictureInput& input, const std::string& path, Picture& out) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, path, opened); !open) return open;
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    if (Status held = Materialize(picture.pixels, input.Space()); !held) return held;
    out = std::move(picture);
    return Status::Ok();
  });
  return ReadStatus(opened, status);
}

// The file is read even if the source of the work was passed on in memory.
Status ReadTags(PictureInput input, const std::string& path, PictureTags& tags) {
  input.control.content = nullptr;
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] { return Open(input, path, opened); });
  if (status) tags = std::move(opened.tags);
  return status;
}

Status CheckCrop(const host::Files& files, const CropRequest& request, const Limits& limits) {
  if (request.rect.Empty()) return fault::EmptyRectangle();
  if (!WithinLimits(request.rect.width, request.rect.height, limits)) return fault::SidesTooLarge();
  const std::optional<host::FileFacts> source = files.Stat(request.source);
  return source && source->kind != host::FileKind::File ? fault::NotAFile() : Status::Ok();
}

bool IsDirect(const CropRequest& request) {
  return request.encoder == Encoder::Jpeg && request.tagSource.empty() && !request.upright;
}

Status CropJpeg(const CropRequest& request, const Limits& limits, host::Draft& draft, const JpegCutControl& control) {
  const auto sink = [&](const void* data, std::size_t size) { return draft.Write(data, size); };
  const Status cut =
      CutJpeg(request.source, request.rect, request.quality, request.dpi, request.exif, limits, sink, control);
  return cut ? CheckOutput(Encoder::Jpeg, draft) : cut;
}

Status CropDirectly(const PictureInput& input, const CropRequest& request, host::Draft& draft, const Admission& admit) {
  JpegCutControl control;
  control.stop = input.control.stop;
  control.calls = input.control.calls;
  control.content = input.control.content;
  control.admit = admit;
  return CropJpeg(request, input.limits, draft, control);
}

Status EncodeWindow(Picture picture, base::Rect rect, const CropRequest& request, const PixelSpace& space,
                    host::Draft& draft) {
  // Pad before blending, since the padding is opaque white in any case.
  picture.pixels = CropOrPad(picture.pixels, rect, base::kWhite);
  if (request.depth == Depth::Eight) picture.pixels = EightBit(picture.pixels);
  if (request.alpha == Alpha::OnWhite) picture.pixels = Flattened(picture.pixels, base::kWhite);
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  const EncodeOptions options{request.encoder, request.quality, false, request.exif, request.orient};
  return EncodePicture(picture, options, space, draft);
}

// The rows below the crop are read too, so that damage there is found.
Status CropThrough(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, request.source, opened); !open) return open;
    const base::Size& size = opened.original;
    // If the crop misses the picture, one row is read all the same, because it has the format of the pixels.
    base::Rect seen = Intersection(request.rect, {0, 0, size.width, size.height});
    if (seen.Empty()) seen.height = 1;
    Picture cut;
    cut.tags = opened.tags;
    CopyTags(input, request, cut.tags);
    if (Status read = ReadRows(opened, seen.top, seen.height, cut.pixels); !read) return read;
    base::Rect rect = request.rect;
    rect.top -= seen.top;
    Status written = EncodeWindow(std::move(cut), rect, request, input.Space(), draft);
    return written ? CheckRemainingRows(opened) : written;
  });
  return ReadStatus(opened, status);
}

Status MakeCrop(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  if (IsDirect(request)) {
    Status status = CropDirectly(input, request, draft);
    if (status || status.GetProblem() != Problem::Unsupported || draft.Size() > 0) return status;
  }
  return CropThrough(input, request, draft);
}

Status CropUnder(const PictureInput& input, const CropRequest& request, const Overlay& overlay, Picture& out) {
  Picture above;
  if (Status loaded = LoadPicture(input, request.source, out); !loaded) return loaded;
  if (Status loaded = LoadPicture(input, overlay.picture, above); !loaded) return loaded;
  return Guarded(fault::DamagedPicture(), [&] {
    out = Displayed(out);
    out.pixels = AsRgb(CropOrPad(out.pixels, request.rect, base::kWhite));
    if (Status upright = MakeUpright(out.pixels, out.tags.orientation, input.Space()); !upright) return upright;
    out.tags.orientation = 1;
    if (Status held = Materialize(out.pixels, input.Space()); !held) return held;
    const base::Rect place{overlay.left, overlay.top, above.pixels.width(), above.pixels.height()};
    return Draw(out, above, place, input.Space());
  });
}

Status DrawBorder(const PictureInput& input, const BorderRequest& request, Picture& out) {
  if (Status fits = CheckBorder(request, input.limits); !fits) return fits;
  const base::Size& total = request.total;
  Picture picture;
  if (Status status = LoadPicture(input, request.source, picture); !status) return status;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    VImage pixels = EightBit(Flattened(picture.pixels, request.colour));
    if (!request.image.Empty()) {
      pixels = CropOrPad(pixels, {0, 0, request.image.width, request.image.height}, request.colour);
    }
    pixels = Turned(pixels, request.rotation, request.colour);
    const base::Size drawn = DrawnSize(request);
    const bool scaled = pixels.width() != drawn.width || pixels.height() != drawn.height;
    // Scaling reads rows more than once, and a turned row takes long to compute.
    const bool keepTurned = request.rotation != 0 && scaled;
    Status held = keepTurned ? Materialize(pixels, input.Space()) : MaterializeSmall(pixels, input.Space());
    if (!held) return held;
    pixels = Scaled(pixels, drawn);
    picture.pixels = CropOrPad(pixels, {-request.offsetX, -request.offsetY, total.width, total.height}, request.colour);
    return Status::Ok();
  });
  if (!status) return status;
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  if (!request.tagSource.empty()) {
    PictureTags named;
    if (ReadTags(input, request.tagSource, named)) picture.tags.orientation = named.orientation;
  }
  if (request.rotation != 0) {
    picture.tags.orientation = 1;
    picture.tags.exif = UprightExif(picture.tags.exif);
  }
  if (!ProfileFits(picture.tags.profile, picture.pixels)) picture.tags.profile.clear();
  out = std::move(picture);
  return Status::Ok();
}

Status EncodeBorder(const Picture& bordered, const BorderRequest& request, const PixelSpace& space,
                    host::Draft& draft) {
  EncodeOptions options{.quality = request.quality, .exif = request.exif};
  options.encoder = EncoderOfPath(request.destination);
  return EncodePicture(bordered, options, space, draft);
}

Status CheckZoom(const ZoomRequest& request, const Limits& limits) {
  if (request.size.width < 1 || request.size.height < 1) return fault::NoSize();
  return WithinLimits(request.size.width, request.size.height, limits) ? Status::Ok() : fault::SidesTooLarge();
}

Status MakeZoom(const PictureInput& input, const ZoomRequest& request, host::Draft& draft) {
  EncodeOptions options{.quality = kZoomQuality, .exif = request.exif};
  options.encoder = EncoderOfPath(request.destination);
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, request.source, opened); !open) return open;
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    picture.pixels = Scaled(picture.pixels, request.size);
    return EncodePicture(picture, options, input.Space(), draft);
  });
  return ReadStatus(opened, status);
}

Status MakeEffects(const PictureInput& input, const EffectsRequest& request, host::Draft& draft) {
  Picture picture;
  if (Status loaded = LoadPicture(input, request.source, picture); !loaded) return loaded;
  if (picture.pixels.width() != request.size.width || picture.pixels.height() != request.size.height) {
    return {Problem::Other, "图片的尺寸与已知的不同"};
  }
  const int orientation = picture.tags.orientation;
  for (const PixelStep& step : request.steps) {
    Status applied = Guarded(fault::DamagedPicture(), [&] { return ApplyStep(step, picture, input.Space()); });
    if (!applied) return applied;
    const auto* rotate = std::get_if<RotateStep>(&step);
    if (rotate && rotate->turn == Turn::Back) SetOrientation(picture.tags, orientation);
    if (input.control.stop.stop_requested()) return Stopped();
  }
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  const SaveOptions& save = request.save;
  const EncodeOptions options{request.encoder, save.quality, save.blackWhite, save.exif, save.orient};
  return Guarded(fault::NotSaved(), [&] { return EncodePicture(picture, options, input.Space(), draft); });
}

Encoder EncoderOf(const FileRequest& request) {
  if (const auto* crop = std::get_if<CropRequest>(&request)) return crop->encoder;
  if (const auto* effects = std::get_if<EffectsRequest>(&request)) return effects->encoder;
  if (const auto* cut = std::get_if<PngCutRequest>(&request)) return EncoderOf(*cut);
  if (const auto* drawn = std::get_if<PngOverBmpRequest>(&request)) return EncoderOf(*drawn);
  return EncoderOfPath(DestinationOf(request));
}

namespace {

// libvips keeps buffers for each thread until vips_thread_shutdown is called.
class ThreadBuffers {
 public:
  ThreadBuffers() = default;
  ~ThreadBuffers() { vips_thread_shutdown(); }
  ThreadBuffers(const ThreadBuffers&) = delete;
  ThreadBuffers& operator=(const ThreadBuffers&) = delete;
};

class Worker {
 public:
  Worker(const FileWork& work, const PictureInput& input, const WorkHooks& hooks)
      : work_(work), input_(input), hooks_(hooks) {}

  Status Run() {
    if (const CropRequest* crop = OnlyCrop(); crop && IsDirect(*crop)) {
      host::Draft& draft = hooks_.output();
      const auto admit = [&](std::int64_t bytes) { return hooks_.admit(bytes, 0); };
      Status status = CropDirectly(input_, *crop, draft, admit);
      if (status || status.GetProblem() != Problem::Unsupported || draft.Size() > 0) return status;
      return RunSteps(&draft);
    }
    return RunSteps(nullptr);
  }

 private:
  const CropRequest* OnlyCrop() const {
    return work_.steps.size() == 1 ? std::get_if<CropRequest>(&work_.steps.front()) : nullptr;
  }

  // first: a draft that was created already and must be used for the first output.
  Status RunSteps(host::Draft* first) {
    const ThreadBuffers buffers;
    if (Status admitted = Admit(); !admitted) return admitted;
    for (std::size_t i = 0; i < work_.steps.size(); ++i) {
      if (input_.control.stop.stop_requested()) return Stopped();
      PictureInput input = input_;
      input.control.content = std::exchange(handed_, nullptr);
      if (work_.PassedOn(i)) {
        // The working memory already counts its size.
        MemoryDraft draft([](std::int64_t) { return Status::Ok(); });
        if (Status made = Make(i, input, draft); !made) return made;
        handed_ = std::make_shared<const std::string>(draft.Release());
      } else {
        host::Draft& draft = first ? *std::exchange(first, nullptr) : hooks_.output();
        if (Status made = Make(i, input, draft); !made) return made;
      }
    }
    return Status::Ok();
  }

  Status Admit() {
    OpenedPicture source;
    Status opened = Guarded(fault::DamagedPicture(), [&] {
      return OpenPicture(input_.files, work_.Source(), input_.limits, {}, source, input_.control);
    });
    if (!opened) return opened;
    WorkMemory memory = MemoryFor(work_, source);
    const int pixelBytes = source.Facts().PixelBytes();
    if (SharesDecode()) memory.working += std::int64_t{source.original.width} * source.original.height * pixelBytes;
    return hooks_.admit(memory.working, memory.results) ? Status::Ok() : Stopped();
  }

  bool SharesDecode() const {
    const auto* first = std::get_if<CropRequest>(&work_.steps.front());
    return first && work_.steps.size() > 1 &&
           std::all_of(work_.steps.begin(), work_.steps.end(), [&](const FileRequest& request) {
             const auto* crop = std::get_if<CropRequest>(&request);
             return crop && crop->source == first->source && FitsDecoded(*crop, first->encoder);
           });
  }

  // If the decoded picture does not fit into memory, the source is decoded for each crop.
  Status CropShared(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
    if (!decoded_) {
      decoded_.emplace();
      const Status decoded = DecodeForCuts(input, request.source, request.encoder, work_, *decoded_);
      shared_ = static_cast<bool>(decoded);
      if (!decoded && decoded.GetProblem() != Problem::TooLarge) return decoded;
    }
    return shared_ ? CropDecoded(input, *decoded_, request, draft) : MakeCrop(input, request, draft);
  }

  Status Make(std::size_t step, const PictureInput& input, host::Draft& draft) {
    return Guarded(fault::NotSaved(), [&] {
      return std::visit([&](const auto& request) { return Make(request, input, draft); }, work_.steps[step]);
    });
  }
  Status Make(const CropRequest& request, const PictureInput& input, host::Draft& draft) {
    return SharesDecode() ? CropShared(input, request, draft) : MakeCrop(input, request, draft);
  }
  Status Make(const BorderRequest& request, const PictureInput& input, host::Draft& draft) {
    Picture bordered;
    Status drawn = DrawBorder(input, request, bordered);
    return drawn ? EncodeBorder(bordered, request, input.Space(), draft) : drawn;
  }
  Status Make(const ZoomRequest& request, const PictureInput& input, host::Draft& draft) {
    Status fits = CheckZoom(request, input.limits);
    return fits ? MakeZoom(input, request, draft) : fits;
  }
  Status Make(const EffectsRequest& request, const PictureInput& input, host::Draft& draft) {
    return MakeEffects(input, request, draft);
  }
  Status Make(const PngCutRequest& request, const PictureInput& input, host::Draft& draft) {
    return MakePngCut(input, request, draft);
  }
  Status Make(const PngOverBmpRequest& request, const PictureInput& input, host::Draft& draft) {
    return MakePngOverBmp(input, request, draft);
  }

  const FileWork& work_;
  const PictureInput& input_;
  const WorkHooks& hooks_;
  std::shared_ptr<const std::string> handed_;  // the output of the step before
  std::optional<DecodedSource> decoded_;
  bool shared_ = false;
};

// Returns whether CropToFile refuses the request.
bool Refused(const FileRequest& request, const Limits& limits) {
  const auto* crop = std::get_if<CropRequest>(&request);
  return crop && (crop->rect.Empty() || !WithinLimits(crop->rect.width, crop->rect.height, limits));
}

}  // namespace

Status DoWork(const FileWork& work, const PictureInput& input, const WorkHooks& hooks) {
  for (const FileRequest& request : work.steps) {
    if (Refused(request, input.limits)) return fault::EmptyRectangle();
  }
  return Worker(work, input, hooks).Run();
}

}  // namespace quillon::imaging
