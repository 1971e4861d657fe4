// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

namespace quillon::imaging {

// Lays the coefficients of a picture in several scans in large pages of memory, if the system has them. The first
// touch of each small page is a tenth of the time of such a picture.
class JpegPages {
 public:
  JpegPages() = default;
  JpegPages(const JpegPages&) = delete;
  JpegPages& operator=(const JpegPages&) = delete;

  // Call right after the decoder was created. Uses its client_data; must live as long as the decoder.
  void Attach(jpeg_decompress_struct& decoder);

 private:
  struct Coefficients {
    jvirt_barray_ptr array;
    std::size_t bytes;
  };

  static jvirt_barray_ptr OnRequest(j_common_ptr info, int pool, boolean zeroed, JDIMENSION blocks, JDIMENSION rows,
                                    JDIMENSION rowsAtOnce);
  static void OnRealize(j_common_ptr info);

  decltype(jpeg_memory_mgr::request_virt_barray) request_ = nullptr;
  decltype(jpeg_memory_mgr::realize_virt_arrays) realize_ = nullptr;
  std::array<Coefficients, MAX_COMPS_IN_SCAN> wanted_{};
  std::size_t count_ = 0;
};

}  // namespace quillon::imaging
