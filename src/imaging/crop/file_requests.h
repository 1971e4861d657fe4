// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/files/files.h"
#include "imaging/io/read_control.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

// The operations from file to file, without the final file: they read an input and write into a draft. They may be
// called from any thread.
namespace quillon::imaging {

// How pictures are read, and the limits that apply.
struct PictureInput {
  const host::Files& files;
  Limits limits;
  ReadControl control = {};
};

// Called before that many bytes of working memory are allocated. If it returns false, the work fails with Stopped.
using Admission = std::function<bool(std::int64_t bytes)>;

// Decodes a whole picture into memory.
Status LoadPicture(const PictureInput& input, const std::string& path, Picture& out);

// Returns whether CropDirectly can make the crop if the source is a JPEG.
bool IsDirect(const CropRequest& request);
// Crops from JPEG to JPEG without libvips. Unsupported, with nothing written: the source is no JPEG, or of a kind that
// JpegReader does not read.
Status CropDirectly(const PictureInput& input, const CropRequest& request, host::Draft& draft,
                    const Admission& admit = {});
// Crops a source of any format, row by row.
Status CropThrough(const PictureInput& input, const CropRequest& request, host::Draft& draft);
// Crops by CropDirectly if possible, else by CropThrough.
Status MakeCrop(const PictureInput& input, const CropRequest& request, host::Draft& draft);

// Cuts in memory, because a gif is held whole anyway to choose its colours, and draws overlay on the cut.
Status CropUnder(const PictureInput& input, const CropRequest& request, const Overlay& overlay, Picture& out);

// Draws the border in memory; EncodeBorder writes it.
Status DrawBorder(const PictureInput& input, const BorderRequest& request, Picture& out);
Status EncodeBorder(const Picture& bordered, const BorderRequest& request, host::Draft& draft);

// Fails if the size is empty or exceeds the limits.
Status CheckZoom(const ZoomRequest& request, const Limits& limits);
Status MakeZoom(const PictureInput& input, const ZoomRequest& request, host::Draft& draft);

Status MakeEffects(const PictureInput& input, const EffectsRequest& request, host::Draft& draft);

// Returns the encoder of the file that the request writes.
Encoder EncoderOf(const FileRequest& request);

}  // namespace quillon::imaging
