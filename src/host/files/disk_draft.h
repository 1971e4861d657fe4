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

// A draft on a disk. Its file is locked while it is written. A sweep can therefore recognise a draft that a killed run
// left: a lock ends with its process, even in another container or on another machine, where a process number means
// nothing.
// A draft that was not placed removes its file when it is destroyed.
class DiskDraft final : public Draft {
 public:
  // Creates an empty draft in the folder of path, with the given mode. serial must return a new number on each call.
  // calls counts what the draft asks of the disk, if set, and has to outlive it.
  static Status Open(Disk& disk, const std::string& path, unsigned mode, const std::function<std::uint64_t()>& serial,
                     DiskCalls* calls, std::unique_ptr<DiskDraft>& draft);
  ~DiskDraft() override;
  DiskDraft(const DiskDraft&) = delete;
  DiskDraft& operator=(const DiskDraft&) = delete;

  Status Write(const void* data, std::size_t size) override;
  Status Seek(std::uint64_t position) override;
  std::int64_t Read(void* data, std::size_t size) override;
  std::uint64_t Size() const override { return size_; }

  // The first failure of the calls above. A writer that ignores a failure must not get its file placed.
  const Status& FirstFailure() const { return failure_; }
  // Compares the file on disk with what was written and fails if they differ. Gives the attributes of the draft.
  Status Check(DiskFacts& facts);
  int Handle() const { return handle_; }

  // Renames the draft to the final path and hands over the open handle. Free fails if the path exists; Replace does
  // not.
  // On failure the draft stays as it was.
  enum class Target { Replace, Free };
  Status Place(const std::string& path, Target target, int& handle);

 private:
  DiskDraft(Disk& disk, std::string path, int handle, DiskCalls* calls);
  Status Fail(int error);

  Disk& disk_;
  std::string path_;
  int handle_;
  DiskCalls* calls_;
  std::uint64_t position_ = 0;
  std::uint64_t size_ = 0;
  Status failure_;
};

}  // namespace quillon::host
