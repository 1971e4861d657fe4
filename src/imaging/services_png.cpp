// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Cuts that keep transparency.
#include <memory>
#include <optional>
#include <utility>

#include "imaging/crop/png_requests.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

// Saves the result if exactly that request was prefetched.
template <class Request>
Status SaveIfPrefetched(Services& services, const Request& request, bool& saved) {
  std::optional<Services::PrefetchedFiles> ready;
  Status waited = services.PopPrefetched({{request}}, ready);
  saved = ready.has_value();
  if (!saved) return waited;
  auto content = std::make_shared<const std::string>(std::move(ready->front()));
  return services.SavePrefetched(std::move(content), request.destination, EncoderOf(request));
}

}  // namespace

Status Services::PngCut(const PngCutRequest& request) {
  bool saved = false;
  Status status = SaveIfPrefetched(*this, request, saved);
  if (saved || !status) return status;
  return parts_->Run([request](const Parts::Access& access) {
    return access.Save(request.destination,
                       [&](host::Draft& draft) { return MakePngCut(access.Input(), request, draft); });
  });
}

Status Services::PngOverBmp(const PngOverBmpRequest& request) {
  bool saved = false;
  Status status = SaveIfPrefetched(*this, request, saved);
  if (saved || !status) return status;
  return parts_->Run([request](const Parts::Access& access) {
    return access.Save(request.destination,
                       [&](host::Draft& draft) { return MakePngOverBmp(access.Input(), request, draft); });
  });
}

}  // namespace quillon::imaging
