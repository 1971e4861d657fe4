// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "host/files/files.h"
#include "host/status.h"
#include "imaging/io/read_control.h"

namespace quillon::imaging {

// Accepts the bytes of a result in order, in blocks; a failure ends the work and is its result.
using ByteSink = std::function<host::Status(const void*, std::size_t)>;

// Random access to the bytes of a picture file. All members may be called from several threads.
class Bytes {
 public:
  virtual ~Bytes() = default;
  // Returns the size in bytes; it does not change while the object lives.
  virtual std::uint64_t Size() const = 0;
  // Copies size bytes from offset to out. Returns false, with out undefined, if not all of them can be read.
  virtual bool ReadAt(std::uint64_t offset, void* out, std::size_t size) = 0;
};

// The bytes of a file on disk. The size is read once, when the file is opened.
class FileBytes : public Bytes {
 public:
  // Opens the file and keeps it open: a later rename or replacement of the path does not affect this object.
  // Returns the error of the system, and leaves out unchanged, if the file cannot be opened.
  static host::Status Open(const std::string& path, std::shared_ptr<FileBytes>& out);
  std::uint64_t Size() const override { return size_; }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  std::mutex mutex_;
  std::ifstream file_;
  std::uint64_t size_ = 0;
};

// The same interface over a string in memory.
class MemoryBytes : public Bytes {
 public:
  explicit MemoryBytes(std::string content) : content_(std::make_shared<const std::string>(std::move(content))) {}
  explicit MemoryBytes(std::shared_ptr<const std::string> content) : content_(std::move(content)) {}
  std::uint64_t Size() const override { return content_->size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  std::shared_ptr<const std::string> content_;
};

// Other bytes, read in blocks of which the first and the latest are kept, so that reading many small numbers costs few
// reads of the file. One thread at a time may use it. A read larger than a block is passed on.
class BlockBytes : public Bytes {
 public:
  static constexpr std::size_t kBlock = std::size_t{16} * 1024;

  // bytes has to outlive the object.
  explicit BlockBytes(Bytes& bytes) : bytes_(bytes) {}
  std::uint64_t Size() const override { return bytes_.Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  struct Block {
    std::uint64_t at = 0;
    std::string content;

    bool CopyTo(std::uint64_t offset, void* out, std::size_t size) const;
  };
  bool Fill(Block& block, std::uint64_t offset);

  Bytes& bytes_;
  Block first_;
  Block latest_;
};

// The bytes of a file as ReadControl wants them read: each read is counted, and none is made after a stop.
class ControlledBytes : public Bytes {
 public:
  ControlledBytes(std::shared_ptr<Bytes> bytes, ReadControl control)
      : bytes_(std::move(bytes)), control_(std::move(control)) {}
  std::uint64_t Size() const override { return bytes_->Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override;

 private:
  std::shared_ptr<Bytes> bytes_;
  ReadControl control_;
};

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

// Reads size bytes of the draft from offset. Returns false if not all of them can be read.
// Moves the position of the draft.
bool ReadDraft(host::Draft& draft, std::uint64_t offset, void* out, std::size_t size);

}  // namespace quillon::imaging
