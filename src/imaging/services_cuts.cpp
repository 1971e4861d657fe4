// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Several cuts of one decode.
#include <optional>
#include <utility>

#include "host/files/file_stamp.h"
#include "imaging/crop/crop_window.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {

// A JPEG for JPEGs is held as it is stored, everything else as a picture.
struct CutSourceData {
  std::string path;
  host::FileFacts facts;
  Encoder encoder = Encoder::Jpeg;
  std::optional<JpegPixels> jpeg;
  Picture picture;
};

CutSource::CutSource() = default;
CutSource::CutSource(std::unique_ptr<CutSourceData> data) : data_(std::move(data)) {}
CutSource::~CutSource() = default;
CutSource::CutSource(CutSource&&) noexcept = default;
CutSource& CutSource::operator=(CutSource&&) noexcept = default;

Status Services::OpenForCuts(const std::string& path, Encoder encoder, CutSource& out) {
  const std::optional<host::FileFacts> facts = parts_->files.Stat(path);
  auto data = std::make_unique<CutSourceData>();
  data->path = path;
  data->facts = facts.value_or(host::FileFacts());
  data->encoder = encoder;
  if (encoder == Encoder::Jpeg) {
    JpegPixels pixels;
    Status decoded = DecodeJpeg(path, parts_->limits, pixels);
    if (decoded) data->jpeg = std::move(pixels);
    if (!decoded && decoded.GetProblem() != host::Problem::Unsupported) return decoded;
  }
  if (!data->jpeg) {
    if (Status loaded = parts_->Load(path, data->picture); !loaded) return loaded;
  }
  out = CutSource(std::move(data));
  return Status::Ok();
}

Status Services::CropToFile(const CutSource& source, const CropRequest& request) {
  const CutSourceData* data = source.Data();
  const std::optional<host::FileFacts> now = parts_->files.Stat(request.source);
  const bool fits = data && data->path == request.source && data->encoder == request.encoder && now &&
                    Unchanged(*now, data->facts) && request.tagSource.empty() && !request.upright;
  if (!fits) return CropToFile(request);
  if (Status status = CheckCrop(parts_->files, request, parts_->limits); !status) return status;
  return parts_->SaveCut(request, [&](host::Draft& draft) {
    if (data->jpeg) return CropJpeg(request, parts_->limits, draft, &*data->jpeg);
    return Guarded(fault::DamagedPicture(), [&] { return EncodeWindow(data->picture, request.rect, request, draft); });
  });
}

}  // namespace quillon::imaging
