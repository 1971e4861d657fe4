// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/preview_loader.h"

namespace quillon::ui {

PreviewLoader::PreviewLoader(Reader reader, QObject* parent) : QObject(parent), read_(std::move(reader)) {
  thread_.setMaxThreadCount(1);
  thread_.setExpiryTimeout(-1);  // libvips keeps buffers for every thread that ever used it
}

PreviewLoader::~PreviewLoader() {
  // A picture that is still being read is not delivered any more.
  ++latest_;
  thread_.clear();
  thread_.waitForDone();
}

QImage PreviewLoader::PopPrefetched(const std::string& path, QSize limit) {
  const std::string version = VersionOf(path);
  const std::lock_guard lock(mutex_);
  return prefetched_.Is(path, version, limit) ? std::exchange(prefetched_, {}).picture : QImage();
}

QImage PreviewLoader::Prefetched(const std::string& path, QSize limit) {
  const std::string version = VersionOf(path);
  const std::lock_guard lock(mutex_);
  return prefetched_.Is(path, version, limit) ? prefetched_.picture : QImage();
}

void PreviewLoader::Load(const std::string& path, QSize limit) {
  const int ticket = ++latest_;
  const QImage early = PopPrefetched(path, limit);
  if (!early.isNull()) {
    if (receive_) receive_(early);
    return;
  }
  thread_.start([this, path, limit, ticket] {
    if (ticket != latest_) return;
    // A prefetch of the same picture may have finished while this call waited for the thread.
    QImage picture = PopPrefetched(path, limit);
    if (picture.isNull()) picture = read_(path, limit);
    QMetaObject::invokeMethod(
        this,
        [this, picture, ticket] {
          if (ticket == latest_ && receive_) receive_(picture);
        },
        Qt::QueuedConnection);
  });
}

void PreviewLoader::Prefetch(const std::string& path, QSize limit) {
  {
    const std::lock_guard lock(mutex_);
    if (prefetched_.path == path) return;
    prefetched_ = {path, {}, limit, {}};
  }
  if (path.empty()) return;
  thread_.start([this, path, limit] {
    {
      const std::lock_guard lock(mutex_);
      if (prefetched_.path != path) return;
    }
    // The version is taken before reading: if the file changes meanwhile, the picture is not used.
    const std::string version = VersionOf(path);
    const QImage picture = read_(path, limit);
    const std::lock_guard lock(mutex_);
    if (prefetched_.path == path) prefetched_ = {path, version, limit, picture};
  });
}

}  // namespace quillon::ui
