// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/frame_requests.h"

#include <memory>

#include "imaging/codecs/encode.h"
#include "imaging/gif/gif_cut.h"
#include "imaging/gif/gif_delogo.h"
#include "imaging/io/open_bytes.h"

namespace quillon::imaging {
namespace {

using FrameOperation = Status (*)(Bytes& bytes, base::Rect rect, const Limits& limits, const ByteSink& sink);

Status ChangeFrames(const PictureInput& input, const CropRequest& request, FrameOperation operation,
                    host::Draft& draft) {
  std::shared_ptr<Bytes> bytes;
  if (Status opened = OpenBytes(input.files, request.source, input.control, bytes); !opened) return opened;
  const auto sink = [&](const void* data, std::size_t size) { return draft.Write(data, size); };
  const Status changed = operation(*bytes, request.rect, input.limits, sink);
  return changed ? CheckOutput(Encoder::Gif, draft) : changed;
}

}  // namespace

Status CropFrames(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  return ChangeFrames(input, request, CutGif, draft);
}

Status PaintOverFrames(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  return ChangeFrames(input, request, RemoveLogo, draft);
}

}  // namespace quillon::imaging
