// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Several cuts of one decode.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "host/files/file_stamp.h"
#include "imaging/crop/crop_window.h"
#include "imaging/crop/decoded_source.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {

struct CutSourceData {
  // The finished crop for exactly this request; nullptr if it was not prefetched.
  const std::string* Prefetched(const CropRequest& request) const {
    const auto found = std::find(cuts.steps.begin(), cuts.steps.end(), FileRequest(request));
    return found == cuts.steps.end() ? nullptr : &contents[static_cast<std::size_t>(found - cuts.steps.begin())];
  }

  std::string path;
  host::FileFacts facts;
  std::optional<DecodedSource> decoded;
  FileWork cuts;                       // prefetched, in place of decoded
  Services::PrefetchedFiles contents;  // of each of them
};

CutSource::CutSource() = default;
CutSource::CutSource(std::unique_ptr<CutSourceData> data) : data_(std::move(data)) {}
CutSource::~CutSource() = default;
CutSource::CutSource(CutSource&&) noexcept = default;
CutSource& CutSource::operator=(CutSource&&) noexcept = default;

// The work is thrown away after a stop request, which ends the wait for it: it may be far longer than one crop.
Status Services::Parts::PopCuts(const FileWork& cuts, std::optional<PrefetchedFiles>& ready) {
  if (cuts.Empty() || !prefetcher) return Status::Ok();
  const auto stopped = [this] { return hooks.stopped && hooks.stopped(); };
  const auto pump = [&] {
    if (hooks.idle) hooks.idle();
    if (stopped()) prefetcher->PlanWork({});
  };
  Status waited = prefetcher->Pop(cuts, pump, ready);
  return waited && !ready && stopped() ? Status(host::Problem::Stopped, "已停止") : waited;
}

Status Services::OpenForCuts(const std::string& path, Encoder encoder, CutSource& out, const FileWork& cuts) {
  const std::optional<host::FileFacts> facts = parts_->files.Stat(path);
  auto data = std::make_unique<CutSourceData>();
  data->path = path;
  data->facts = facts.value_or(host::FileFacts());
  std::optional<PrefetchedFiles> ready;
  if (Status waited = parts_->PopCuts(cuts, ready); !waited) return waited;
  if (ready) {
    data->cuts = cuts;
    data->contents = std::move(*ready);
  } else {
    data->decoded.emplace();
    if (Status decoded = DecodeForCuts(parts_->Input(), path, encoder, *data->decoded); !decoded) return decoded;
  }
  out = CutSource(std::move(data));
  return Status::Ok();
}

Status Services::CropToFile(const CutSource& source, const CropRequest& request) {
  const CutSourceData* data = source.Data();
  const std::optional<host::FileFacts> now = parts_->files.Stat(request.source);
  if (!data || data->path != request.source || !now || !Unchanged(*now, data->facts)) return CropToFile(request);
  const std::string* content = data->Prefetched(request);
  const bool decoded = data->decoded && FitsDecoded(request, data->decoded->encoder);
  if (!content && !decoded) return CropToFile(request);
  if (Status status = CheckCrop(parts_->files, request, parts_->limits); !status) return status;
  return parts_->SaveCut(request, [&](host::Draft& draft) {
    return content ? WriteContent(*content, request.encoder, draft)
                   : CropDecoded(parts_->Input(), *data->decoded, request, draft);
  });
}

}  // namespace quillon::imaging
