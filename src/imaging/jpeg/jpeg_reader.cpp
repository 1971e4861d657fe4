// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_reader.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr int kRowsHeld = 96;       // by a decoder and an encoder together, at most
constexpr int kCoefficients = 128;  // bytes of a block's coefficients
// Every scan passes over all coefficients, so a small file could keep a decoder busy for hours. The scans that a
// picture may have shrink with its pixels.
constexpr int kScansMin = 30;       // any picture may have so many
constexpr int kScansMax = 500;      // no picture may have more
constexpr double kScanWork = 20e9;  // pixels times scans, if that is more than kScansMin

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

// --- JpegPages

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

// --- JpegReader

Status JpegReader::Open(const std::string& path, const Limits& limits, int widthWritten) {
  if (Status opened = source_.Open(path, head_); !opened) return opened;
  if (!errors_.Guard([this] { ReadHeader(); })) return errors_.Result();
  return CheckLimits(limits, widthWritten);
}

void JpegReader::ReadHeader() {
  decoder_.err = errors_.Handle();
  jpeg_create_decompress(&decoder_);
  pages_.Attach(decoder_);
  source_.Attach(decoder_);
  jpeg_read_header(&decoder_, TRUE);
  if (decoder_.jpeg_color_space == JCS_UNKNOWN) errors_.Fail(Problem::Unsupported, "不支持这种JPEG图片");
  severalScans_ = jpeg_has_multiple_scans(&decoder_) == TRUE;
  decoder_.out_color_space = decoder_.jpeg_color_space;
  decoder_.do_block_smoothing = FALSE;
  const double pixels = static_cast<double>(decoder_.image_width) * decoder_.image_height;
  scansMax_ = static_cast<int>(std::clamp<double>(kScanWork / pixels, kScansMin, kScansMax));
  progress_.base.progress_monitor = &JpegReader::OnProgress;
  progress_.owner = this;
  decoder_.progress = &progress_.base;
  errors_.DataBegins();
}

Status JpegReader::CheckLimits(const Limits& limits, int widthWritten) {
  const std::int64_t width = decoder_.image_width;
  const std::int64_t height = decoder_.image_height;
  if (width > limits.jpegSide || height > limits.jpegSide || !WithinLimits(width, height, limits)) {
    return {Problem::TooLarge, "图片尺寸超出限制"};
  }
  // A caller that writes no rows checks by itself what it holds of a picture in one scan.
  const bool counts = widthWritten > 0 || severalScans_;
  if (counts && BytesHeld(widthWritten) > limits.memory) return {Problem::TooLarge, "图片太大，超出内存限制"};
  decoder_.mem->max_memory_to_use =
      static_cast<long>(std::min<std::int64_t>(limits.memory, std::numeric_limits<long>::max()));
  return Status::Ok();
}

// Rows of both codecs, and of a picture in several scans all coefficients.
std::int64_t JpegReader::BytesHeld(int widthWritten) const {
  const std::int64_t widest = std::max<std::int64_t>(decoder_.image_width, widthWritten);
  std::int64_t bytes = widest * decoder_.num_components * kRowsHeld;
  if (!severalScans_) return bytes;
  for (int i = 0; i < decoder_.num_components; ++i) {
    const jpeg_component_info& component = decoder_.comp_info[i];
    bytes += std::int64_t{component.width_in_blocks + component.h_samp_factor} *
             (component.height_in_blocks + component.v_samp_factor) * kCoefficients;
  }
  return bytes;
}

// libjpeg calls this for every row of blocks and every row of pixels.
void JpegReader::CheckScan() {
  if (stop_.stop_requested()) errors_.Fail(Problem::Stopped, "已停止");
  // The file may be valid. It is no Problem::Unsupported, which would let another decoder read it without a bound.
  if (decoder_.input_scan_number > scansMax_) errors_.Fail(Problem::Damaged, "不支持的格式：扫描次数过多的 JPEG");
}

void JpegReader::ChooseOutput(J_COLOR_SPACE colours, int shrink) {
  decoder_.out_color_space = colours;
  decoder_.scale_num = 1;
  decoder_.scale_denom = static_cast<unsigned>(shrink);
  jpeg_calc_output_dimensions(&decoder_);
}

void JpegReader::StartRows() { jpeg_start_decompress(&decoder_); }

int JpegReader::CropColumns(int first, int count) {
  JDIMENSION begin = static_cast<JDIMENSION>(first);
  JDIMENSION size = static_cast<JDIMENSION>(count);
  if (size < decoder_.output_width) jpeg_crop_scanline(&decoder_, &begin, &size);
  return static_cast<int>(begin);
}

void JpegReader::SkipRows(int count) {
  if (count > 0) jpeg_skip_scanlines(&decoder_, static_cast<JDIMENSION>(count));
}

// libjpeg hands out a few rows a call, as the sampling has it.
void JpegReader::ReadRows(JSAMPARRAY rows, int count) {
  for (int read = 0; read < count;) {
    read += static_cast<int>(jpeg_read_scanlines(&decoder_, rows + read, static_cast<JDIMENSION>(count - read)));
  }
}

void JpegReader::StartPlanes() {
  decoder_.raw_data_out = TRUE;
  jpeg_start_decompress(&decoder_);
}

void JpegReader::ReadPlanes(JSAMPIMAGE planes, int rows) {
  jpeg_read_raw_data(&decoder_, planes, static_cast<JDIMENSION>(rows));
}

void JpegReader::CheckRest() {
  if (severalScans_) return;  // the start has read all of it
  const bool all =
      decoder_.output_height > 0 && decoder_.output_scanline >= decoder_.output_height && !decoder_.arith_code;
  source_.CheckToEnd(decoder_.unread_marker, all ? JpegSource::Rest::AllDecoded : JpegSource::Rest::Undecoded);
}

}  // namespace quillon::imaging
