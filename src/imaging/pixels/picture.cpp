// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/picture.h"

#include <algorithm>

namespace quillon::imaging {
namespace {

// More threads than this gain nothing for one picture and each holds buffers.
constexpr int kMostThreads = 4;

void Ignore(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

void Start() {
  if (VIPS_INIT("quillon") != 0) throw vips::VError();
  // A result kept for a name would be handed out again after the file has changed.
  vips_cache_set_max(0);
  vips_concurrency_set(std::clamp(vips_concurrency_get(), 1, kMostThreads));
  // Failures come back as results; the rest is chatter about odd files.
  g_log_set_handler("VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_INFO), Ignore, nullptr);
}

}  // namespace

void EnsureVips() {
  static std::once_flag once;
  std::call_once(once, Start);
}

Image::Image() = default;
Image::Image(std::unique_ptr<ImageData> data) : data_(std::move(data)) {}
Image::~Image() = default;
Image::Image(Image&&) noexcept = default;
Image& Image::operator=(Image&&) noexcept = default;

}  // namespace quillon::imaging
