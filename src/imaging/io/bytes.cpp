// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/io/bytes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace quillon::imaging {

host::Status FileBytes::Open(const std::string& path, std::shared_ptr<FileBytes>& out) {
  auto bytes = std::make_shared<FileBytes>();
  // A stream does not report why it could not be opened, so errno is the only source of a reason.
  errno = 0;
  bytes->file_.open(path, std::ios::binary | std::ios::ate);
  if (!bytes->file_) {
    return errno != 0 ? host::Status::FromErrno(errno) : host::Status(host::Problem::Other, "文件无法打开");
  }
  const std::streamoff end = bytes->file_.tellg();
  if (end < 0) return {host::Problem::Other, "文件无法读取"};
  bytes->size_ = static_cast<std::uint64_t>(end);
  out = std::move(bytes);
  return host::Status::Ok();
}

bool FileBytes::ReadAt(std::uint64_t offset, void* out, std::size_t size) {
  if (offset > size_ || size > size_ - offset) return false;
  const std::lock_guard lock(mutex_);
  // An earlier read may have left the stream in a failed state.
  file_.clear();
  file_.seekg(static_cast<std::streamoff>(offset));
  file_.read(static_cast<char*>(out), static_cast<std::streamsize>(size));
  return file_.good() && static_cast<std::size_t>(file_.gcount()) == size;
}

bool MemoryBytes::ReadAt(std::uint64_t offset, void* out, std::size_t size) {
  if (offset > content_->size() || size > content_->size() - offset) return false;
  if (size > 0) std::memcpy(out, content_->data() + offset, size);
  return true;
}

bool BlockBytes::ReadAt(std::uint64_t offset, void* out, std::size_t size) {
  if (offset > Size() || size > Size() - offset) return false;
  if (first_.CopyTo(offset, out, size) || latest_.CopyTo(offset, out, size)) return true;
  if (size > kBlock) return bytes_.ReadAt(offset, out, size);
  const bool beginning = first_.content.empty() && offset + size <= kBlock;
  Block& block = beginning ? first_ : latest_;
  return Fill(block, beginning ? 0 : offset) && block.CopyTo(offset, out, size);
}

bool BlockBytes::Block::CopyTo(std::uint64_t offset, void* out, std::size_t size) const {
  if (offset < at || offset - at > content.size() || size > content.size() - (offset - at)) return false;
  if (size > 0) std::memcpy(out, content.data() + (offset - at), size);
  return true;
}

bool BlockBytes::Fill(Block& block, std::uint64_t offset) {
  block.at = offset;
  block.content.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, Size() - offset)));
  if (bytes_.ReadAt(offset, block.content.data(), block.content.size())) return true;
  block.content.clear();
  return false;
}

bool ControlledBytes::ReadAt(std::uint64_t offset, void* out, std::size_t size) {
  if (control_.stop.stop_requested()) return false;
  return control_.Reading([&] { return bytes_->ReadAt(offset, out, size); });
}

host::Status MemoryDraft::Write(const void* data, std::size_t size) {
  const std::size_t end = position_ + size;
  if (size > 0 && end > bytes_.size()) {
    if (host::Status grown = grow_(static_cast<std::int64_t>(end - bytes_.size())); !grown) return grown;
    bytes_.resize(std::max(position_, bytes_.size()));
  }
  const char* from = static_cast<const char*>(data);
  const std::size_t over = std::min(size, bytes_.size() - std::min(position_, bytes_.size()));
  std::copy_n(from, over, bytes_.begin() + static_cast<std::ptrdiff_t>(position_));
  bytes_.append(from + over, size - over);
  position_ = end;
  return host::Status::Ok();
}

host::Status MemoryDraft::Seek(std::uint64_t position) {
  position_ = static_cast<std::size_t>(position);
  return host::Status::Ok();
}

std::int64_t MemoryDraft::Read(void* data, std::size_t size) {
  const std::size_t count = std::min(size, bytes_.size() - std::min(position_, bytes_.size()));
  if (count > 0) std::memcpy(data, bytes_.data() + position_, count);
  position_ += count;
  return static_cast<std::int64_t>(count);
}

bool ReadDraft(host::Draft& draft, std::uint64_t offset, void* out, std::size_t size) {
  if (!draft.Seek(offset)) return false;
  auto* to = static_cast<unsigned char*>(out);
  while (size > 0) {
    const std::int64_t count = draft.Read(to, size);
    if (count <= 0) return false;
    to += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace quillon::imaging
