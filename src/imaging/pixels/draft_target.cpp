// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/draft_target.h"

#include <algorithm>

namespace quillon::imaging {

using host::Status;

DraftTarget::DraftTarget(host::Draft& draft)
    : draft_(draft), custom_(vips_target_custom_new()), target_(VIPS_TARGET(custom_)) {
  g_signal_connect(custom_, "write", G_CALLBACK(OnWrite), this);
  g_signal_connect(custom_, "read", G_CALLBACK(OnRead), this);
  g_signal_connect(custom_, "seek", G_CALLBACK(OnSeek), this);
}

// After a failed save libvips may release the target later, and must not reach the draft then.
DraftTarget::~DraftTarget() { g_signal_handlers_disconnect_by_data(custom_, this); }

gint64 DraftTarget::OnWrite(VipsTargetCustom*, const void* data, gint64 size, DraftTarget* self) {
  if (!self->result_) return -1;
  self->result_ = self->draft_.Write(data, static_cast<std::size_t>(size));
  if (!self->result_) return -1;
  self->at_ += size;
  return size;
}

gint64 DraftTarget::OnRead(VipsTargetCustom*, void* data, gint64 size, DraftTarget* self) {
  const gint64 count = self->draft_.Read(data, static_cast<std::size_t>(size));
  self->at_ += std::max<gint64>(count, 0);
  return count;
}

gint64 DraftTarget::OnSeek(VipsTargetCustom*, gint64 offset, int whence, DraftTarget* self) {
  // libvips passes the constants of lseek.
  const gint64 base = whence == SEEK_SET   ? 0
                      : whence == SEEK_CUR ? self->at_
                                           : static_cast<gint64>(self->draft_.Size());
  if (!self->result_ || offset < -base) return -1;
  self->result_ = self->draft_.Seek(static_cast<std::uint64_t>(base + offset));
  if (!self->result_) return -1;
  self->at_ = base + offset;
  return self->at_;
}

namespace {

// Carries the callback and its result through the C interface of libvips.
struct RowVisitor {
  const std::function<Status(const RowBlock&)>& onRows;
  Status result;
};

int OnRows(VipsRegion* region, VipsRect* area, void* visitor) {
  auto& self = *static_cast<RowVisitor*>(visitor);
  self.result = self.onRows({area->top, area->height, VIPS_REGION_ADDR(region, 0, area->top),
                             static_cast<std::size_t>(VIPS_REGION_LSKIP(region))});
  return self.result ? 0 : -1;
}

}  // namespace

Status ForEachRows(const vips::VImage& pixels, const std::function<Status(const RowBlock&)>& onRows) {
  RowVisitor visitor{onRows, {}};
  if (vips_sink_disc(pixels.get_image(), OnRows, &visitor) != 0) {
    // An error of the callback made libvips fail; return the cause instead of the consequence.
    if (!visitor.result) {
      vips_error_clear();
      return visitor.result;
    }
    throw vips::VError();
  }
  return visitor.result;
}

}  // namespace quillon::imaging
