// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace quillon::imaging {
namespace {

constexpr std::size_t kWorthIt = std::size_t{4} << 20;  // two large pages

// Advice for all whole pages of a block; it does no harm if the system ignores it.
void AdviseLargePages(void* block, std::size_t bytes) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t first = (begin + page - 1) / page * page;
  const std::uintptr_t end = (begin + bytes) / page * page;
  madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
}

}  // namespace

void JpegPages::Attach(jpeg_decompress_struct& decoder) {
  decoder.client_data = this;
  request_ = decoder.mem->request_virt_barray;
  realize_ = decoder.mem->realize_virt_arrays;
  decoder.mem->request_virt_barray = &JpegPages::OnRequest;
  decoder.mem->realize_virt_arrays = &JpegPages::OnRealize;
}

jvirt_barray_ptr JpegPages::OnRequest(j_common_ptr info, int pool, boolean zeroed, JDIMENSION blocks, JDIMENSION rows,
                                      JDIMENSION rowsAtOnce) {
  JpegPages& self = *static_cast<JpegPages*>(info->client_data);
  jvirt_barray_control* const array = self.request_(info, pool, zeroed, blocks, rows, rowsAtOnce);
  const std::size_t bytes = sizeof(JBLOCK) * blocks * rows;
  if (bytes >= kWorthIt && self.count_ < self.wanted_.size()) self.wanted_[self.count_++] = {array, bytes};
  return array;
}

// Each array is allocated in one block, but not yet touched.
void JpegPages::OnRealize(j_common_ptr info) {
  JpegPages& self = *static_cast<JpegPages*>(info->client_data);
  self.realize_(info);
  for (std::size_t i = 0; i < self.count_; ++i) {
    const Coefficients& wanted = self.wanted_[i];
    AdviseLargePages(info->mem->access_virt_barray(info, wanted.array, 0, 1, TRUE)[0], wanted.bytes);
  }
  self.count_ = 0;
}

}  // namespace quillon::imaging
