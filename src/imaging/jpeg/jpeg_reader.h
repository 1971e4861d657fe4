// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stop_token>
#include <string>

#include <jpeglib.h>

#include "imaging/io/read_control.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/jpeg/jpeg_stream.h"
#include "imaging/limits.h"

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

// Reads one JPEG file. Cuts, previews and effects all decode through this class, so that they accept the same files
// and report the same damage.
//
// Call Open first. Then choose the output if it differs from the default, start once, and read from the top. The calls
// after Open run under the Guard of errors and fail by its jump. A picture is held whole only if it is stored in
// several scans (progressive, or one scan for each component); all of it is then read by the start.
class JpegReader {
 public:
  // errors may be shared with a writer, so that one Guard covers both. A stop ends the reading soon, with
  // Problem::Stopped.
  explicit JpegReader(JpegErrors& errors, const ReadControl& control = {})
      : errors_(errors), stop_(control.stop), source_(errors, control) {}
  ~JpegReader() { jpeg_destroy_decompress(&decoder_); }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;

  // Opens path and reads everything before the picture data. Nothing large is allocated.
  // widthWritten is the width of the rows that are encoded meanwhile, 0 if none are; see BytesHeld. A width above 0
  // also counts the rows of a picture of one scan against the limit of memory, which is not checked otherwise.
  // Unsupported: not a JPEG, or of a kind that is not read here (lossless, hierarchical, 12 bit, other colour spaces).
  // TooLarge: a side, the pixels or BytesHeld are above limits. Damaged: truncated or corrupt.
  // Missing, Denied: the file cannot be opened.
  Status Open(const std::string& path, const Limits& limits, int widthWritten = 0);

  const JpegHead& Head() const { return head_; }
  // Size, sampling and colours. The output size is known when the output was chosen or decoding was started.
  const jpeg_decompress_struct& Info() const { return decoder_; }
  bool SeveralScans() const { return severalScans_; }
  // Bytes that are held at the peak if rows of widthWritten pixels are encoded meanwhile (0: none are).
  std::int64_t BytesHeld(int widthWritten = 0) const;

  // Rows will have these colours and 1/shrink of the size (1, 2, 4 or 8; sides are rounded up). Without this call they
  // are as stored and whole.
  void ChooseOutput(J_COLOR_SPACE colours, int shrink);

  void StartRows();
  // Restricts the rows to count columns from first on, or a few more. Returns the first column that they really have.
  // Call right after StartRows.
  int CropColumns(int first, int count);
  // Chroma of the rows that follow is as in the whole picture. count is less than the rows that are left.
  void SkipRows(int count);
  void ReadRows(JSAMPARRAY rows, int count);

  // Components are handed out as they are stored, without upsampling.
  void StartPlanes();
  // rows are rows of pixels: one row of minimum coded units.
  void ReadPlanes(JSAMPIMAGE planes, int rows);

  // Call once after the last read. Follows the file to its end-of-image marker. If every row was decoded, no more data
  // may come before it; if not, only a missing end is found.
  void CheckRest();

 private:
  struct Progress {
    jpeg_progress_mgr base;
    JpegReader* owner;
  };

  static void OnProgress(j_common_ptr info) { reinterpret_cast<Progress*>(info->progress)->owner->CheckScan(); }

  void ReadHeader();
  void CheckScan();
  Status CheckLimits(const Limits& limits, int widthWritten);

  JpegErrors& errors_;
  std::stop_token stop_;
  JpegSource source_;
  JpegPages pages_;
  JpegHead head_;
  jpeg_decompress_struct decoder_{};
  Progress progress_{};
  int scansMax_ = 0;
  bool severalScans_ = false;
};

}  // namespace quillon::imaging
