// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/files/files.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/io/read_control.h"
#include "imaging/jpeg/jpeg_cut.h"
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

  PixelSpace Space() const { return {files, limits}; }
};

// Called before that many bytes of working memory are allocated. If it returns false, the work fails with Stopped.
using Admission = std::function<bool(std::int64_t bytes)>;

// Decodes a whole picture into memory.
Status LoadPicture(const PictureInput& input, const std::string& path, Picture& out);

// Reads the metadata of a picture, without its pixels.
Status ReadTags(PictureInput input, const std::string& path, PictureTags& tags);

// Checks a request before anything is read. Returns an error if the rectangle is empty or exceeds the limits, or if the
// source is not a regular file. A missing source passes; opening it reports the error.
Status CheckCrop(const host::Files& files, const CropRequest& request, const Limits& limits);

// Returns whether CropDirectly can make the crop if the source is a JPEG.
bool IsDirect(const CropRequest& request);
// Crops from JPEG to JPEG without libvips. Unsupported, with nothing written: the source is no JPEG, or of a kind that
// JpegReader does not read.
Status CropDirectly(const PictureInput& input, const CropRequest& request, host::Draft& draft,
                    const Admission& admit = {});
// Cuts a JPEG to a JPEG (see CutJpeg) into a draft, and checks what was written.
Status CropJpeg(const CropRequest& request, const Limits& limits, host::Draft& draft,
                const JpegCutControl& control = {});
// Crops or pads the picture to rect on white and writes it with the encoder of the request.
// Samples are reduced to 8 bits, and alpha is blended with white, unless the request keeps them.
Status EncodeWindow(Picture picture, base::Rect rect, const CropRequest& request, const PixelSpace& space,
                    host::Draft& draft);
// Crops a source of any format, row by row.
Status CropThrough(const PictureInput& input, const CropRequest& request, host::Draft& draft);
// Crops by CropDirectly if possible, else by CropThrough.
Status MakeCrop(const PictureInput& input, const CropRequest& request, host::Draft& draft);

// Cuts in memory, because a gif is held whole anyway to choose its colours, turns the cut upright, and draws overlay on
// it.
Status CropUnder(const PictureInput& input, const CropRequest& request, const Overlay& overlay, Picture& out);

// Draws the border in memory; EncodeBorder writes it.
Status DrawBorder(const PictureInput& input, const BorderRequest& request, Picture& out);
Status EncodeBorder(const Picture& bordered, const BorderRequest& request, const PixelSpace& space, host::Draft& draft);

// Fails if the size is empty or exceeds the limits.
Status CheckZoom(const ZoomRequest& request, const Limits& limits);
Status MakeZoom(const PictureInput& input, const ZoomRequest& request, host::Draft& draft);

Status MakeEffects(const PictureInput& input, const EffectsRequest& request, host::Draft& draft);

// Returns the encoder of the file that the request writes.
Encoder EncoderOf(const FileRequest& request);

// What DoWork asks of its caller.
struct WorkHooks {
  // Called once, before anything large is allocated: the bytes of working memory, which are free again at the end, and
  // the bytes of results, if these are larger than a jpeg. If it returns false, the work fails with Stopped.
  std::function<bool(std::int64_t working, std::int64_t results)> admit;
  // Returns a draft for the next output.
  std::function<host::Draft&()> output;
};

// Does a work without writing files. The outputs have the same bytes as the files of the single operations. Several
// crops of one source share its decoded picture. Fails if any step fails; the drafts must then be dropped.
Status DoWork(const FileWork& work, const PictureInput& input, const WorkHooks& hooks);

}  // namespace quillon::imaging
