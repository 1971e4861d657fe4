// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>

#include "host/status.h"

namespace quillon::imaging {

// Bytes read at any position, as a picture's file gives them. Safe to call from several threads.
class Bytes {
 public:
  virtual ~Bytes() = default;
  virtual std::uint64_t Size() const = 0;
  // All size bytes from offset, or false.
  virtual bool ReadAt(std::uint64_t offset, void* out, std::size_t size) = 0;
};

class FileBytes : public Bytes {
 public:
  // The file keeps being read as it was opened, whatever takes its name later.
  static host::Status Open(const std::string& path, std::shared_ptr<FileBytes>& out);
  std::uint64_t Size() const override { return size_; }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  std::mutex mutex_;
  std::ifstream file_;
  std::uint64_t size_ = 0;
};

class MemoryBytes : public Bytes {
 public:
  explicit MemoryBytes(std::string content) : content_(std::move(content)) {}
  std::uint64_t Size() const override { return content_.size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  std::string content_;
};

}  // namespace quillon::imaging
