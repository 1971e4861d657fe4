// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/file_work.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "imaging/codecs/open_picture.h"
#include "imaging/crop/decoded_source.h"
#include "imaging/crop/work_memory.h"
#include "imaging/io/memory_draft.h"

namespace quillon::imaging {
namespace {

using host::Problem;

Status Stopped() { return {Problem::Stopped, "已停止"}; }

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
      const Status decoded = DecodeForCuts(input, request.source, request.encoder, *decoded_);
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
    return drawn ? EncodeBorder(bordered, request, draft) : drawn;
  }
  Status Make(const ZoomRequest& request, const PictureInput& input, host::Draft& draft) {
    Status fits = CheckZoom(request, input.limits);
    return fits ? MakeZoom(input, request, draft) : fits;
  }
  Status Make(const EffectsRequest& request, const PictureInput& input, host::Draft& draft) {
    return MakeEffects(input, request, draft);
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
