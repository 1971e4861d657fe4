// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/io/memory_draft.h"

#include <algorithm>
#include <cstring>

namespace quillon::imaging {

using host::Problem;
using host::Status;

Status MemoryDraft::Write(const void* data, std::size_t size) {
  const std::size_t over = std::min(size, bytes_.size() - position_);
  if (size > over) {
    if (Status grown = grow_(static_cast<std::int64_t>(size - over)); !grown) return grown;
  }
  const char* from = static_cast<const char*>(data);
  if (over > 0) std::memcpy(bytes_.data() + position_, from, over);
  bytes_.append(from + over, size - over);
  position_ += size;
  return Status::Ok();
}

Status MemoryDraft::Seek(std::uint64_t position) {
  if (position > bytes_.size()) return {Problem::Other, "写入位置超出文件末尾"};
  position_ = static_cast<std::size_t>(position);
  return Status::Ok();
}

std::int64_t MemoryDraft::Read(void* data, std::size_t size) {
  const std::size_t count = std::min(size, bytes_.size() - position_);
  if (count > 0) std::memcpy(data, bytes_.data() + position_, count);
  position_ += count;
  return static_cast<std::int64_t>(count);
}

}  // namespace quillon::imaging
