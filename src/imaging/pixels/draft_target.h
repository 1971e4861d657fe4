// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "host/files/files.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// A draft as a target that savers write to, move about in and read back. Must outlive the save.
class DraftTarget {
 public:
  explicit DraftTarget(host::Draft& draft);
  ~DraftTarget();
  DraftTarget(const DraftTarget&) = delete;
  DraftTarget& operator=(const DraftTarget&) = delete;

  const vips::VTarget& Target() const { return target_; }
  // The first failure of the draft.
  const host::Status& Result() const { return result_; }

 private:
  static gint64 OnWrite(VipsTargetCustom*, const void* data, gint64 size, DraftTarget* self);
  static gint64 OnRead(VipsTargetCustom*, void* data, gint64 size, DraftTarget* self);
  static gint64 OnSeek(VipsTargetCustom*, gint64 offset, int whence, DraftTarget* self);

  host::Draft& draft_;
  VipsTargetCustom* custom_;
  vips::VTarget target_;
  gint64 at_ = 0;
  host::Status result_;
};

// All size bytes of the draft from offset, or false.
bool ReadDraft(host::Draft& draft, std::uint64_t offset, void* out, std::size_t size);

// Computes pixels from top to bottom and hands them over in blocks of rows; take gets the number of the first one.
// A failure of take ends it and is the result. take is called on one thread, not always the caller's.
struct RowBlock {
  int top = 0;
  int count = 0;
  const unsigned char* first = nullptr;
  std::size_t step = 0;  // bytes from row to row
};
host::Status ForEachRows(const vips::VImage& pixels, const std::function<host::Status(const RowBlock&)>& take);

}  // namespace quillon::imaging
