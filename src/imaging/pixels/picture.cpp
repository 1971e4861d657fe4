// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/picture.h"

#include <algorithm>

namespace quillon::imaging {
namespace {

// More threads do not speed up one picture, and each of them holds buffers.
constexpr int kMostThreads = 4;

void Ignore(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

}  // namespace

void StartVips() {
  if (VIPS_INIT("quillon") != 0) throw vips::VError();
  // The operation cache of libvips knows a file by its name and would return old pixels after the file has changed.
  vips_cache_set_max(0);
  vips_concurrency_set(std::clamp(vips_concurrency_get(), 1, kMostThreads));
  // Errors are returned as results. The remaining messages are warnings about unusual files.
  g_log_set_handler("VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_INFO), Ignore, nullptr);
}

}  // namespace quillon::imaging
