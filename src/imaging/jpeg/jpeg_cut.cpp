// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_cut.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>

#include "imaging/jpeg/jpeg_head.h"
#include "imaging/jpeg/jpeg_pages.h"
#include "imaging/jpeg/jpeg_planes.h"
#include "imaging/jpeg/jpeg_rows.h"
#include "imaging/jpeg/jpeg_stream.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr int kFullChromaQuality = 90;
constexpr int kRowsHeld = 96;       // by both codecs together, at most
constexpr int kCoefficients = 128;  // bytes of a block's coefficients
constexpr int kScansMin = 30;       // scans that any picture may have
constexpr int kScansMax = 500;      // and the most
constexpr double kScanWork = 20e9;  // pixels times scans above kScansMin
constexpr int kDensityMax = 65535;

// One cut. Everything that libjpeg's jumps could leave behind is a member.
class Cutter {
 public:
  Cutter(base::Rect rect, int quality, int dpi, Exif exif, const Limits& limits, const ByteSink& sink,
         const JpegCutControl& control)
      : rect_(rect),
        quality_(std::clamp(quality, 0, 100)),
        dpi_(dpi),
        exif_(exif),
        limits_(limits),
        control_(control),
        source_(errors_, control.stop, control.reads),
        target_(errors_, sink) {}

  ~Cutter() {
    jpeg_destroy_compress(&encoder_);
    jpeg_destroy_decompress(&decoder_);
  }
  Cutter(const Cutter&) = delete;
  Cutter& operator=(const Cutter&) = delete;

  Status Run(const std::string& path) {
    if (rect_.Empty()) return {Problem::Other, "裁切区域为空"};
    if (rect_.width > limits_.jpegSide || rect_.height > limits_.jpegSide) {
      return {Problem::TooLarge, "裁切区域超出JPEG图片的最大尺寸"};
    }
    if (Status opened = source_.Open(path, head_); !opened) return opened;
    if (!errors_.Guard([this] { Examine(); })) return errors_.Result();
    if (control_.admit && !control_.admit(BytesHeld())) return {Problem::Stopped, "已停止"};
    ChooseMover();
    if (!errors_.Guard([this] { mover_->Start(); })) return errors_.Result();
    mover_->Allocate();
    MakeExif();
    if (!errors_.Guard([this] { Write(); })) return errors_.Result();
    return Status::Ok();
  }

 private:
  struct Progress {
    jpeg_progress_mgr base;
    Cutter* owner;
  };

  static void OnProgress(j_common_ptr info) { reinterpret_cast<Progress*>(info->progress)->owner->CheckScan(); }

  void Examine() {
    ReadHeader();
    CheckLimits();
    SetUpEncoder();
    errors_.DataBegins();
  }

  void Write() {
    WriteMarkers();
    mover_->Move();
    jpeg_finish_compress(&encoder_);
    if (decodes_) CheckRest();
  }

  void ReadHeader() {
    decoder_.err = errors_.Handle();
    jpeg_create_decompress(&decoder_);
    pages_.Attach(decoder_);
    encoder_.err = errors_.Handle();
    jpeg_create_compress(&encoder_);
    source_.Attach(decoder_);
    jpeg_read_header(&decoder_, TRUE);
    if (decoder_.jpeg_color_space == JCS_UNKNOWN) errors_.Fail(Problem::Unsupported, "不支持这种JPEG图片");
    decoder_.out_color_space = decoder_.jpeg_color_space;
    decoder_.do_block_smoothing = FALSE;
    const double pixels = static_cast<double>(decoder_.image_width) * decoder_.image_height;
    scansMax_ = static_cast<int>(std::clamp<double>(kScanWork / pixels, kScansMin, kScansMax));
    progress_.base.progress_monitor = &Cutter::OnProgress;
    progress_.owner = this;
    decoder_.progress = &progress_.base;
  }

  void CheckLimits() {
    const std::int64_t width = decoder_.image_width;
    const std::int64_t height = decoder_.image_height;
    if (width > std::min(limits_.side, limits_.jpegSide) || height > std::min(limits_.side, limits_.jpegSide) ||
        width * height > limits_.pixels) {
      errors_.Fail(Problem::TooLarge, "图片尺寸超出限制");
    }
    if (BytesHeld() > limits_.memory) errors_.Fail(Problem::TooLarge, "图片太大，超出内存限制");
    decoder_.mem->max_memory_to_use =
        static_cast<long>(std::min<std::int64_t>(limits_.memory, std::numeric_limits<long>::max()));
  }

  // Rows of both codecs, and of a picture in several scans all coefficients.
  std::int64_t BytesHeld() {
    const std::int64_t widest = std::max<std::int64_t>(decoder_.image_width, rect_.width);
    std::int64_t bytes = widest * decoder_.num_components * kRowsHeld;
    if (!jpeg_has_multiple_scans(&decoder_)) return bytes;
    for (int i = 0; i < decoder_.num_components; ++i) {
      const jpeg_component_info& component = decoder_.comp_info[i];
      bytes += std::int64_t{component.width_in_blocks + component.h_samp_factor} *
               (component.height_in_blocks + component.v_samp_factor) * kCoefficients;
    }
    return bytes;
  }

  void CheckScan() {
    if (control_.stop.stop_requested()) errors_.Fail(Problem::Stopped, "已停止");
    if (decoder_.input_scan_number > scansMax_) errors_.Fail(Problem::Damaged, "图片数据已损坏：扫描次数过多");
  }

  void SetUpEncoder() {
    target_.Attach(encoder_);
    encoder_.image_width = static_cast<JDIMENSION>(rect_.width);
    encoder_.image_height = static_cast<JDIMENSION>(rect_.height);
    encoder_.input_components = decoder_.num_components;
    encoder_.in_color_space = decoder_.jpeg_color_space;
    jpeg_set_defaults(&encoder_);
    jpeg_set_colorspace(&encoder_, decoder_.jpeg_color_space);
    jpeg_set_quality(&encoder_, quality_, TRUE);
    SetSampling();
    SetDensity();
    // Without the marker, CMYK values are ink amounts; with it they are stored inverted.
    if (decoder_.jpeg_color_space == JCS_CMYK) encoder_.write_Adobe_marker = head_.adobe ? TRUE : FALSE;
  }

  void SetSampling() {
    if (encoder_.jpeg_color_space != JCS_YCbCr && encoder_.jpeg_color_space != JCS_YCCK) return;
    int across = 2;
    int down = 2;
    if (quality_ >= kFullChromaQuality) {
      across = decoder_.max_h_samp_factor >= 2 * decoder_.comp_info[1].h_samp_factor ? 2 : 1;
      down = decoder_.max_v_samp_factor >= 2 * decoder_.comp_info[1].v_samp_factor ? 2 : 1;
    }
    for (int i = 0; i < encoder_.num_components; ++i) {
      const bool chroma = i == 1 || i == 2;
      encoder_.comp_info[i].h_samp_factor = chroma ? 1 : across;
      encoder_.comp_info[i].v_samp_factor = chroma ? 1 : down;
    }
  }

  void SetDensity() {
    const int dpi = dpi_ > 0 ? dpi_ : head_.Dpi();
    const bool keeps = dpi_ <= 0 && head_.jfif && (head_.unit != JpegHead::Unit::None || dpi <= 0);
    if (keeps) {
      SetDensity(head_.unit, head_.densityX, head_.densityY);
    } else if (dpi > 0) {
      SetDensity(JpegHead::Unit::Inch, dpi, dpi);
    }
  }

  void SetDensity(JpegHead::Unit unit, int x, int y) {
    // A JFIF marker would make decoders take RGB for YCbCr.
    encoder_.write_JFIF_header = encoder_.jpeg_color_space == JCS_RGB ? FALSE : TRUE;
    encoder_.density_unit = static_cast<UINT8>(unit);
    encoder_.X_density = static_cast<UINT16>(std::clamp(x, 1, kDensityMax));
    encoder_.Y_density = static_cast<UINT16>(std::clamp(y, 1, kDensityMax));
  }

  void ChooseMover() {
    if (JpegPlanes::Suits(decoder_, encoder_, rect_)) {
      mover_ = std::make_unique<JpegPlanes>(decoder_, encoder_, rect_);
    } else {
      mover_ = std::make_unique<JpegRows>(decoder_, encoder_, rect_, White(), control_.decoded);
      decodes_ = !control_.decoded;
    }
  }

  std::array<JSAMPLE, 4> White() const {
    switch (encoder_.jpeg_color_space) {
      case JCS_YCbCr:
        return {255, 128, 128, 0};
      case JCS_YCCK:
        return {0, 128, 128, 255};
      case JCS_CMYK:
        if (!head_.adobe) return {0, 0, 0, 0};
        [[fallthrough]];
      default:
        return {255, 255, 255, 255};
    }
  }

  void MakeExif() {
    if (exif_ == Exif::Keep) exifOut_ = CutExif(head_.exif, {rect_.width, rect_.height}, dpi_);
    if (exifOut_.empty()) {
      const bool jfif = encoder_.write_JFIF_header == TRUE;
      exifOut_ = MinimalExif(ReadExif(head_.exif).orientation, jfif ? 0 : dpi_ > 0 ? dpi_ : head_.Dpi());
    }
    if (!exifOut_.empty()) exifOut_.insert(0, "Exif\0\0", 6);
  }

  void WriteMarkers() {
    if (!exifOut_.empty()) WriteMarker(JPEG_APP0 + 1, exifOut_);
    for (const auto& part : head_.icc) WriteMarker(JPEG_APP0 + 2, part);
  }

  void WriteMarker(int marker, std::string_view bytes) {
    jpeg_write_marker(&encoder_, marker, reinterpret_cast<const JOCTET*>(bytes.data()),
                      static_cast<unsigned>(bytes.size()));
  }

  void CheckRest() {
    if (jpeg_has_multiple_scans(&decoder_)) return;  // all was read before the first row
    const bool all =
        decoder_.output_height > 0 && decoder_.output_scanline >= decoder_.output_height && !decoder_.arith_code;
    source_.CheckToEnd(decoder_.unread_marker, all ? JpegSource::Rest::AllDecoded : JpegSource::Rest::Undecoded);
  }

  const base::Rect rect_;
  const int quality_;
  const int dpi_;
  const Exif exif_;
  const Limits& limits_;
  const JpegCutControl& control_;

  JpegErrors errors_;
  JpegSource source_;
  JpegTarget target_;
  JpegPages pages_;
  JpegHead head_;
  jpeg_decompress_struct decoder_{};
  jpeg_compress_struct encoder_{};
  Progress progress_{};
  int scansMax_ = kScansMax;
  bool decodes_ = true;

  std::unique_ptr<JpegTransfer> mover_;
  std::string exifOut_;
};

}  // namespace

Status CutJpeg(const std::string& path, base::Rect rect, int quality, int dpi, Exif exif, const Limits& limits,
               const ByteSink& sink, const JpegCutControl& control) {
  try {
    Cutter cutter(rect, quality, dpi, exif, limits, sink, control);
    return cutter.Run(path);
  } catch (const std::bad_alloc&) {
    return {Problem::TooLarge, "内存不足，无法处理这张图片"};
  }
}

}  // namespace quillon::imaging
