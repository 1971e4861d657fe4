// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/crop/file_requests.h"
#include "imaging/measure/measure.h"
#include "imaging/pixels/picture.h"
#include "imaging/prefetch/prefetcher.h"
#include "imaging/services.h"

namespace quillon::imaging {

// Writes a finished output and checks it.
Status WriteContent(const std::string& content, Encoder encoder, host::Draft& draft);

// What the services are made of; shared by the files that implement them.
struct Services::Parts {
  Parts(host::Files& disk, const std::string& programFolder, WaitHooks waits, const Limits& bounds);

  // Saves through the one safe way. What fill throws becomes a failure.
  Status Save(const std::string& path, const std::function<Status(host::Draft&)>& fill);
  Status SaveCut(const CropRequest& request, const std::function<Status(host::Draft&)>& fill);
  Status SavePicture(const Image& image, const std::string& path, const EncodeOptions& options);

  // The finished crops of OpenForCuts.
  Status PopCuts(const FileWork& cuts, std::optional<PrefetchedFiles>& ready);

  PictureInput Input() const { return {files, limits}; }

  // The prefetcher starts at its first use.
  Prefetcher& StartPrefetcher();

  host::Files& files;
  std::string clipBoardPath;
  WaitHooks hooks;
  Limits limits;
  std::shared_ptr<Measurer> measurer;      // also of a prefetch thread that hangs
  std::unique_ptr<Prefetcher> prefetcher;  // last: it works with the others
};

}  // namespace quillon::imaging
