// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/entry_path.h"

namespace quillon::host {

EntryPath SplitEntry(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return {".", path};
  return {separator == 0 ? "/" : path.substr(0, separator), path.substr(separator + 1)};
}

std::string HeadOfName(std::string_view name, std::size_t limit) {
  if (name.size() <= limit) return std::string(name);
  std::size_t end = limit;
  while (end > 0 && limit - end < 4 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  // Four bytes in a row that only continue a character are no UTF-8: any place is as good as another.
  if (limit - end == 4) end = limit;
  return std::string(name.substr(0, end));
}

}  // namespace quillon::host
