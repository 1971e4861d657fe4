// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/io/memory_draft.h"

#include <algorithm>
#include <cstring>

namespace quillon::imaging {

using host::Status;

Status MemoryDraft::Write(const void* data, std::size_t size) {
  const std::size_t end = position_ + size;
  if (size > 0 && end > bytes_.size()) {
    if (Status grown = grow_(static_cast<std::int64_t>(end - bytes_.size())); !grown) return grown;
    bytes_.resize(std::max(position_, bytes_.size()));
  }
  const char* from = static_cast<const char*>(data);
  const std::size_t over = std::min(size, bytes_.size() - std::min(position_, bytes_.size()));
  std::copy_n(from, over, bytes_.begin() + static_cast<std::ptrdiff_t>(position_));
  bytes_.append(from + over, size - over);
  position_ = end;
  return Status::Ok();
}

Status MemoryDraft::Seek(std::uint64_t position) {
  position_ = static_cast<std::size_t>(position);
  return Status::Ok();
}

std::int64_t MemoryDraft::Read(void* data, std::size_t size) {
  const std::size_t count = std::min(size, bytes_.size() - std::min(position_, bytes_.size()));
  if (count > 0) std::memcpy(data, bytes_.data() + position_, count);
  position_ += count;
  return static_cast<std::int64_t>(count);
}

}  // namespace quillon::imaging
