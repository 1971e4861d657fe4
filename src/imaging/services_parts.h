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

// The members of Services; shared by the files that implement it.
struct Services::Parts {
  Parts(host::Files& disk, const std::string& programFolder, host::DiskThread* onThread, const Limits& bounds,
        Measurer::OtherKinds otherKinds);

  // What an operation that runs on another thread may use. It owns all but the disk, and outlives the services if the
  // disk hangs.
  struct Access {
    host::Files& files;
    Limits limits;
    ReadControl reading;
    host::SaveControl saving;

    PictureInput Input() const { return {files, limits, reading}; }
    PixelSpace Space() const { return {files, limits}; }
    std::optional<host::FileFacts> Stat(const std::string& path) const;
    // See CheckCrop.
    Status Check(const CropRequest& request) const;
    // Saves through the one safe way. What fill throws becomes a failure.
    Status Save(const std::string& path, const std::function<Status(host::Draft&)>& fill) const;
    // Saves the result of a cut. A source that is replaced is kept beside it.
    Status SaveCut(const CropRequest& request, const std::function<Status(host::Draft&)>& fill) const;
  };
  using Operation = std::function<Status(const Access& access)>;
  enum class On { DiskThread, Caller };
  // Runs an operation, by default on the disk thread, if there is one. It must own everything that it touches besides
  // the access.
  Status Run(Operation operation, On on = On::DiskThread);
  // Returns the thread that writes so many finished bytes to path. A small new file on a local disk only goes into the
  // cache of the system, which takes less time than the change of threads.
  On WriterOf(const std::string& path, std::size_t bytes) const;
  Status SavePicture(const Image& image, const std::string& path, const EncodeOptions& options);
  // Saves a prefetched crop.
  Status SaveCrop(const CropRequest& request, std::shared_ptr<const std::string> content);
  // Saves what change makes of the frames of a gif.
  using FrameChange = Status (*)(const PictureInput& input, const CropRequest& request, host::Draft& draft);
  Status ChangeFrames(const CropRequest& request, FrameChange change);
  PixelSpace Space() const { return {files, limits}; }
  // Calls WaitHooks::idle.
  std::function<void()> Idle() const { return thread ? thread->Hooks().idle : nullptr; }

  // Gives the finished crops of OpenForCuts.
  Status PopCuts(const FileWork& cuts, std::optional<PrefetchedFiles>& ready);

  // Returns the prefetcher; its first call creates it.
  Prefetcher& StartPrefetcher();

  host::Files& files;
  std::string clipBoardPath;
  host::DiskThread* thread;  // nullptr: operations run on the calling thread
  Limits limits;
  std::shared_ptr<Measurer> measurer;      // shared with abandoned threads
  std::unique_ptr<Prefetcher> prefetcher;  // last, because it uses the others
};

}  // namespace quillon::imaging
