// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_reader.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "imaging/faults.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/jpeg/jpeg_stream.h"
#include "imaging/limits.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

constexpr int kCoefficientBytes = 2;
constexpr int kMostScans = 200;
constexpr std::size_t kProfileHead = 14;  // "ICC_PROFILE", zero, number, count

// The profile of its numbered segments; "" when one is missing.
std::string JoinProfile(const std::vector<std::string_view>& segments) {
  std::string profile;
  for (std::size_t number = 1; number <= segments.size(); ++number) {
    const auto found = std::find_if(segments.begin(), segments.end(), [&](std::string_view segment) {
      return segment.size() >= kProfileHead && static_cast<unsigned char>(segment[12]) == number;
    });
    if (found == segments.end()) return {};
    profile += found->substr(kProfileHead);
  }
  return profile;
}

// Everything that a jump out of libjpeg could leave behind is a member.
class JpegRows : public RowStream {
 public:
  explicit JpegRows(JpegColours colours) : colours_(colours), source_(errors_, {}) {}
  ~JpegRows() override { jpeg_destroy_decompress(&decoder_); }
  JpegRows(const JpegRows&) = delete;
  JpegRows& operator=(const JpegRows&) = delete;

  Status Open(const std::string& path, int shrink, const Limits& limits) {
    if (Status status = source_.Open(path, head_); !status) return status;
    if (!errors_.Guard([&] { ReadHeader(shrink); })) return errors_.Result();
    if (decoder_.jpeg_color_space == JCS_UNKNOWN) return fault::UnreadKind();
    const bool small = decoder_.image_width <= static_cast<unsigned>(limits.jpegSide) &&
                       decoder_.image_height <= static_cast<unsigned>(limits.jpegSide);
    if (!small || !WithinLimits(decoder_.image_width, decoder_.image_height, limits)) return fault::SidesTooLarge();
    const int held = decoder_.num_components * kCoefficientBytes;
    if (jpeg_has_multiple_scans(&decoder_) && !FitsMemory(decoder_.image_width, decoder_.image_height, held, limits)) {
      return fault::OutOfMemory();
    }
    SetFacts();
    return Status::Ok();
  }

  const RowFacts& Facts() const override { return facts_; }

  // Rows before the first one that is wanted need not be transformed.
  Status SkipRows(int count) override {
    if (begun_ || count >= facts_.size.height) return RowStream::SkipRows(count);
    skipped_ = static_cast<JDIMENSION>(count);
    const bool skipped = errors_.Guard([this] {
      Begin();
      jpeg_skip_scanlines(&decoder_, skipped_);
    });
    return skipped ? Status::Ok() : errors_.Result();
  }

  Status ReadRow(unsigned char* out) override {
    row_ = out;
    const bool read = errors_.Guard([this] {
      if (!begun_) Begin();
      jpeg_read_scanlines(&decoder_, &row_, 1);
      if (decoder_.output_scanline == decoder_.output_height) CheckRest();
    });
    if (!read) return errors_.Result();
    // With this marker, inks are stored as what they leave of the paper's white.
    if (colours_ != JpegColours::AsStored && head_.adobe && facts_.layout == RowLayout::Cmyk) {
      const std::size_t samples = std::size_t{4} * static_cast<unsigned>(facts_.size.width);
      for (std::size_t i = 0; i < samples; ++i) out[i] = static_cast<unsigned char>(255 - out[i]);
    }
    return Status::Ok();
  }

 private:
  struct Progress {
    jpeg_progress_mgr base;
    JpegRows* owner;
  };

  void ReadHeader(int shrink) {
    decoder_.err = errors_.Handle();
    jpeg_create_decompress(&decoder_);
    source_.Attach(decoder_);
    jpeg_read_header(&decoder_, TRUE);
    decoder_.out_color_space = AcceptsAsStored() ? decoder_.jpeg_color_space : DisplayedColours();
    decoder_.scale_num = 1;
    decoder_.scale_denom = static_cast<unsigned>(shrink);
    decoder_.do_block_smoothing = FALSE;
    jpeg_calc_output_dimensions(&decoder_);
  }

  bool AcceptsAsStored() const {
    return colours_ == JpegColours::AsStored ||
           (colours_ == JpegColours::YccAsStored && decoder_.jpeg_color_space == JCS_YCbCr);
  }

  J_COLOR_SPACE DisplayedColours() const {
    switch (decoder_.jpeg_color_space) {
      case JCS_GRAYSCALE:
        return JCS_GRAYSCALE;
      case JCS_CMYK:
      case JCS_YCCK:
        return JCS_CMYK;
      default:
        return JCS_RGB;
    }
  }

  void SetFacts() {
    facts_.size = {static_cast<int>(decoder_.output_width), static_cast<int>(decoder_.output_height)};
    facts_.layout = static_cast<RowLayout>(decoder_.out_color_components);
    facts_.ycc = decoder_.out_color_space == JCS_YCbCr;
    facts_.dpi = head_.Dpi();
    facts_.profile = JoinProfile(head_.icc);
    facts_.exif = head_.exif;
    facts_.orientation = ReadExif(head_.exif).orientation;
  }

  // Only the first row needs the memory of a decoder that runs.
  void Begin() {
    progress_.base.progress_monitor = [](j_common_ptr info) {
      JpegRows& self = *reinterpret_cast<Progress*>(info->progress)->owner;
      if (self.decoder_.input_scan_number > kMostScans)
        self.errors_.Fail(host::Problem::Damaged, "图片数据损坏或不完整");
    };
    progress_.owner = this;
    decoder_.progress = &progress_.base;
    errors_.DataBegins();
    jpeg_start_decompress(&decoder_);
    begun_ = true;
  }

  void CheckRest() {
    if (jpeg_has_multiple_scans(&decoder_)) return;  // all was read before the first row
    const auto rest = decoder_.arith_code ? JpegSource::Rest::Undecoded : JpegSource::Rest::AllDecoded;
    source_.CheckToEnd(decoder_.unread_marker, rest);
  }

  const JpegColours colours_;
  JpegErrors errors_;
  JpegSource source_;
  JpegHead head_;
  jpeg_decompress_struct decoder_{};
  bool begun_ = false;
  Progress progress_{};
  RowFacts facts_;
  JSAMPROW row_ = nullptr;
  JDIMENSION skipped_ = 0;
};

}  // namespace

Status OpenJpegRows(const std::string& path, int shrink, const Limits& limits, std::shared_ptr<RowStream>& out,
                    JpegColours colours) {
  auto rows = std::make_shared<JpegRows>(colours);
  if (Status status = rows->Open(path, shrink, limits); !status) return status;
  out = std::move(rows);
  return Status::Ok();
}

}  // namespace quillon::imaging
