// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/measure/measure.h"
#include "imaging/pixels/picture.h"
#include "imaging/prefetch/prefetcher.h"
#include "imaging/services.h"

namespace quillon::imaging {

// What the services are made of; shared by the files that implement them.
struct Services::Parts {
  Parts(host::Files& disk, const std::string& programFolder, WaitHooks waits, const Limits& bounds);

  // Saves through the one safe way. What fill throws becomes a failure.
  Status Save(const std::string& path, const std::function<Status(host::Draft&)>& fill);
  Status SaveCut(const CropRequest& request, const std::function<Status(host::Draft&)>& fill);
  Status SavePicture(const Image& image, const std::string& path, const EncodeOptions& options);

  // Decodes a picture whole.
  Status Load(const std::string& path, Picture& out);
  // Pixels computed and held, so that later work and a second save need not do it again.
  Status Materialize(vips::VImage& pixels);

  // Turns on the work ahead at its first use.
  Prefetcher& StartPrefetcher();

  host::Files& files;
  std::string clipBoardPath;
  WaitHooks hooks;
  Limits limits;
  std::shared_ptr<Measurer> measurer;  // also of a thread ahead that hangs
  std::unique_ptr<Prefetcher> ahead;   // last: it works with the others
};

// Whether the JPEG path may take a cut, if its source is one.
inline bool IsDirect(const CropRequest& request) {
  return request.encoder == Encoder::Jpeg && request.tagSource.empty() && !request.upright;
}

}  // namespace quillon::imaging
