// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/files/disk.h"
#include "host/files/files.h"

namespace quillon::host {

// A draft on a disk. It is locked for as long as it is written, so that a sweep can tell the draft of a killed run
// from one at work: the lock ends with its process, also with one in another container or, on a network disk, on
// another machine, where a process number would tell nothing. A draft that is not placed removes itself.
class DiskDraft final : public Draft {
 public:
  // Makes an empty draft beside path with that mode. serial gives a new number at each call.
  static Status Open(Disk& disk, const std::string& path, unsigned mode, const std::function<std::uint64_t()>& serial,
                     std::unique_ptr<DiskDraft>& draft);
  ~DiskDraft() override;
  DiskDraft(const DiskDraft&) = delete;
  DiskDraft& operator=(const DiskDraft&) = delete;

  Status Write(const void* data, std::size_t size) override;
  Status Seek(std::uint64_t position) override;
  std::int64_t Read(void* data, std::size_t size) override;
  std::uint64_t Size() const override { return size_; }

  // The first failure of the calls above. A writer that passes over a failure does not get its file placed.
  const Status& FirstFailure() const { return failure_; }
  // What the disk holds against what was written. Gives the facts of the draft.
  Status Check(DiskFacts& facts);
  int Handle() const { return handle_; }

  // Renames the draft to the final path, which may be taken or must be free, and hands over the open handle. On
  // failure the draft stays one.
  enum class Target { Replace, Free };
  Status Place(const std::string& path, Target target, int& handle);

 private:
  DiskDraft(Disk& disk, std::string path, int handle);
  Status Fail(int error);

  Disk& disk_;
  std::string path_;
  int handle_;
  std::uint64_t position_ = 0;
  std::uint64_t size_ = 0;
  Status failure_;
};

}  // namespace quillon::host
