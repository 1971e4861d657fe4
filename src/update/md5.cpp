// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/md5.h"

#include <array>
#include <fstream>
#include <memory>

#include <glib.h>

namespace quillon::update {

std::string Md5OfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {};
  const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> sum(g_checksum_new(G_CHECKSUM_MD5), g_checksum_free);
  std::array<char, 32768> block;
  while (file.read(block.data(), block.size()) || file.gcount() > 0) {
    g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(block.data()), static_cast<gssize>(file.gcount()));
  }
  return file.bad() ? std::string() : g_checksum_get_string(sum.get());
}

}  // namespace quillon::update
