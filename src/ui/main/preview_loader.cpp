// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/preview_loader.h"

namespace quillon::ui {

PreviewLoader::PreviewLoader(Reader reader, QObject* parent) : QObject(parent), read_(std::move(reader)) {
  thread_.setMaxThreadCount(1);
  thread_.setExpiryTimeout(-1);  // the image library keeps buffers for every thread it ever met
}

PreviewLoader::~PreviewLoader() {
  ++latest_;
  thread_.waitForDone();
}

void PreviewLoader::Ask(const std::string& path, QSize limit) {
  const int ticket = ++latest_;
  thread_.start([this, path, limit, ticket] {
    if (ticket != latest_) return;
    const QImage picture = read_(path, limit);
    QMetaObject::invokeMethod(
        this,
        [this, picture, ticket] {
          if (ticket == latest_ && take_) take_(picture);
        },
        Qt::QueuedConnection);
  });
}

}  // namespace quillon::ui
