// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Several crops of one decoded picture.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "host/files/file_stamp.h"
#include "imaging/crop/decoded_source.h"
#include "imaging/crop/file_requests.h"
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
CutSource::CutSource(std::shared_ptr<const CutSourceData> data) : data_(std::move(data)) {}
CutSource::~CutSource() = default;
CutSource::CutSource(CutSource&&) noexcept = default;
CutSource& CutSource::operator=(CutSource&&) noexcept = default;

// The work is dropped after a stop request, which ends the wait for it: it may last far longer than one crop.
Status Services::Parts::PopCuts(const FileWork& cuts, std::optional<PrefetchedFiles>& ready) {
  if (cuts.Empty() || !prefetcher) return Status::Ok();
  const auto stopped = [this] { return thread && thread->Hooks().stopped && thread->Hooks().stopped(); };
  const auto pump = [&] {
    if (const auto idle = Idle()) idle();
    if (stopped()) prefetcher->PlanWork({});
  };
  Status waited = prefetcher->Pop(cuts, pump, ready);
  return waited && !ready && stopped() ? Status(host::Problem::Stopped, "已停止") : waited;
}

Status Services::OpenForCuts(const std::string& path, Encoder encoder, CutSource& out, const FileWork& cuts) {
  const auto data = std::make_shared<CutSourceData>();
  data->path = path;
  data->facts = parts_->files.Stat(path).value_or(host::FileFacts());
  std::optional<PrefetchedFiles> ready;
  if (Status waited = parts_->PopCuts(cuts, ready); !waited) return waited;
  if (ready) {
    data->cuts = cuts;
    data->contents = std::move(*ready);
  } else {
    Status decoded = parts_->Run([data, encoder, cuts](const Parts::Access& access) {
      return DecodeForCuts(access.Input(), data->path, encoder, cuts, data->decoded.emplace());
    });
    if (!decoded) return decoded;
  }
  out = CutSource(data);
  return Status::Ok();
}

Status Services::CropToFile(const CutSource& source, const CropRequest& request) {
  const std::shared_ptr<const CutSourceData>& data = source.Data();
  const std::optional<host::FileFacts> now = parts_->files.Stat(request.source);
  if (!data || data->path != request.source || !now || !Unchanged(*now, data->facts)) return CropToFile(request);
  if (const std::string* content = data->Prefetched(request)) return parts_->SaveCrop(request, {data, content});
  const bool fits = data->decoded && FitsDecoded(request, data->decoded->encoder);
  if (!fits || !HoldsPixels(*data->decoded, request.rect)) return CropToFile(request);
  return parts_->Run([data, request](const Parts::Access& access) {
    if (Status status = access.Check(request); !status) return status;
    return access.SaveCut(
        request, [&](host::Draft& draft) { return CropDecoded(access.Input(), *data->decoded, request, draft); });
  });
}

}  // namespace quillon::imaging
