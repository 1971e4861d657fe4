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

// The operations from file to file without the file that is written: they read through an input and write into a
// draft, and touch nothing else. They are called on any thread.
namespace quillon::imaging {

// Where pictures are read from, and within which limits.
struct PictureInput {
  const host::Files& files;
  Limits limits;
  ReadControl control = {};
};

// Asked before so many bytes of working memory are used; false ends the work with Stopped.
using Admission = std::function<bool(std::int64_t bytes)>;

// Decodes a picture whole.
Status LoadPicture(const PictureInput& input, const std::string& path, Picture& out);

// Whether the JPEG path may make a cut, if its source is a JPEG.
bool IsDirect(const CropRequest& request);
// The JPEG path alone. Unsupported, with nothing written: the source is no JPEG of a kind that it reads.
Status CropDirectly(const PictureInput& input, const CropRequest& request, host::Draft& draft,
                    const Admission& admit = {});
// Cuts row by row, whatever the source is.
Status CropThrough(const PictureInput& input, const CropRequest& request, host::Draft& draft);
// One of the two.
Status MakeCrop(const PictureInput& input, const CropRequest& request, host::Draft& draft);

// The picture with its border.
Status DrawBorder(const PictureInput& input, const BorderRequest& request, Picture& out);
Status EncodeBorder(const Picture& bordered, const BorderRequest& request, host::Draft& draft);

// Whether the size asked for can be made at all.
Status CheckZoom(const ZoomRequest& request, const Limits& limits);
Status MakeZoom(const PictureInput& input, const ZoomRequest& request, host::Draft& draft);

Status MakeEffects(const PictureInput& input, const EffectsRequest& request, host::Draft& draft);

// The encoder whose kind of file the request writes.
Encoder EncoderOf(const FileRequest& request);

}  // namespace quillon::imaging
