// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "host/files/files.h"

namespace quillon::imaging {

// A draft that is written into memory.
class MemoryDraft final : public host::Draft {
 public:
  // grow is asked before the draft becomes larger by so many bytes; its failure is that of the write.
  using Grow = std::function<host::Status(std::int64_t bytes)>;
  explicit MemoryDraft(Grow grow) : grow_(std::move(grow)) {}

  host::Status Write(const void* data, std::size_t size) override;
  // As in a file, a write beyond the end fills the gap with zeros.
  host::Status Seek(std::uint64_t position) override;
  std::int64_t Read(void* data, std::size_t size) override;
  std::uint64_t Size() const override { return bytes_.size(); }

  // Call at most once; the draft is empty afterwards.
  std::string Release() { return std::exchange(bytes_, {}); }

 private:
  Grow grow_;
  std::string bytes_;
  std::size_t position_ = 0;
};

}  // namespace quillon::imaging
