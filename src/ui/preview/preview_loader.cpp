// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/preview_loader.h"

namespace quillon::ui {

PreviewLoader::PreviewLoader(Reader reader, QObject* parent) : QObject(parent), read_(std::move(reader)) {
  thread_.setMaxThreadCount(1);
  thread_.setExpiryTimeout(-1);  // the image library keeps buffers for every thread it ever met
}

PreviewLoader::~PreviewLoader() {
  ++latest_;
  thread_.clear();
  thread_.waitForDone();
}

QImage PreviewLoader::PopEarly(const std::string& path, QSize limit) {
  const std::string version = VersionOf(path);
  const std::lock_guard lock(mutex_);
  return early_.Is(path, version, limit) ? std::exchange(early_, {}).picture : QImage();
}

QImage PreviewLoader::Fetched(const std::string& path, QSize limit) {
  const std::string version = VersionOf(path);
  const std::lock_guard lock(mutex_);
  return early_.Is(path, version, limit) ? early_.picture : QImage();
}

void PreviewLoader::Ask(const std::string& path, QSize limit) {
  const int ticket = ++latest_;
  const QImage early = PopEarly(path, limit);
  if (!early.isNull()) {
    if (take_) take_(early);
    return;
  }
  thread_.start([this, path, limit, ticket] {
    if (ticket != latest_) return;
    // It may have been fetched early while this one waited for its turn.
    QImage picture = PopEarly(path, limit);
    if (picture.isNull()) picture = read_(path, limit);
    QMetaObject::invokeMethod(
        this,
        [this, picture, ticket] {
          if (ticket == latest_ && take_) take_(picture);
        },
        Qt::QueuedConnection);
  });
}

void PreviewLoader::Fetch(const std::string& path, QSize limit) {
  {
    const std::lock_guard lock(mutex_);
    if (early_.path == path) return;
    early_ = {path, {}, limit, {}};
  }
  if (path.empty()) return;
  thread_.start([this, path, limit] {
    {
      const std::lock_guard lock(mutex_);
      if (early_.path != path) return;
    }
    const std::string version = VersionOf(path);
    const QImage picture = read_(path, limit);
    const std::lock_guard lock(mutex_);
    if (early_.path == path) early_ = {path, version, limit, picture};
  });
}

}  // namespace quillon::ui
