// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Several cuts of one decode.
#include <optional>
#include <utility>

#include "host/files/file_stamp.h"
#include "imaging/crop/crop_window.h"
#include "imaging/crop/decoded_source.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {

struct CutSourceData {
  std::string path;
  host::FileFacts facts;
  DecodedSource decoded;
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
  if (Status decoded = DecodeForCuts(parts_->Input(), path, encoder, data->decoded); !decoded) return decoded;
  out = CutSource(std::move(data));
  return Status::Ok();
}

Status Services::CropToFile(const CutSource& source, const CropRequest& request) {
  const CutSourceData* data = source.Data();
  const std::optional<host::FileFacts> now = parts_->files.Stat(request.source);
  const bool fits = data && data->path == request.source && now && Unchanged(*now, data->facts) &&
                    FitsDecoded(request, data->decoded.encoder);
  if (!fits) return CropToFile(request);
  if (Status status = CheckCrop(parts_->files, request, parts_->limits); !status) return status;
  return parts_->SaveCut(
      request, [&](host::Draft& draft) { return CropDecoded(parts_->Input(), data->decoded, request, draft); });
}

}  // namespace quillon::imaging
