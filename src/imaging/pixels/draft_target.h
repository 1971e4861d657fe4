// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "host/files/files.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// Lets the savers of libvips write to a draft, seek in it and read back from it.
// The object has to live until the save has returned.
class DraftTarget {
 public:
  explicit DraftTarget(host::Draft& draft);
  ~DraftTarget();
  DraftTarget(const DraftTarget&) = delete;
  DraftTarget& operator=(const DraftTarget&) = delete;

  const vips::VTarget& Target() const { return target_; }
  // Returns the first error of the draft, which libvips itself reports only as a failed write.
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

// A batch of computed rows in memory. Valid during the call that receives it.
struct RowBlock {
  int top = 0;  // number of the first row
  int count = 0;
  const unsigned char* first = nullptr;  // start of that row
  std::size_t step = 0;                  // bytes from one row to the next
};
// Computes the pixels from top to bottom and calls onRows for each batch of rows, in order.
// onRows runs on one thread, which is not always the thread of the caller.
// The first error of onRows ends the computation and is returned. Throws VError if the pixels cannot be computed.
host::Status ForEachRows(const vips::VImage& pixels, const std::function<host::Status(const RowBlock&)>& onRows);

}  // namespace quillon::imaging
