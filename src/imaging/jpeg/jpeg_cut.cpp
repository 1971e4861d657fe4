// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_cut.h"

#include <array>
#include <new>
#include <optional>

#include "imaging/jpeg/jpeg_planes.h"
#include "imaging/jpeg/jpeg_reader.h"
#include "imaging/jpeg/jpeg_rows.h"
#include "imaging/jpeg/jpeg_writer.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

using host::Problem;

// One cut. Everything that libjpeg's jumps could leave behind is a member.
class Cutter {
 public:
  Cutter(base::Rect rect, int quality, int dpi, Exif exif, const Limits& limits, const ByteSink& sink,
         const JpegCutControl& control)
      : rect_(rect),
        quality_(quality),
        dpi_(dpi),
        exif_(exif),
        limits_(limits),
        control_(control),
        reader_(errors_, {control.stop, control.calls, control.content}),
        writer_(errors_, sink) {}

  Status Run(const std::string& path) {
    if (rect_.Empty()) return {Problem::Other, "裁切区域为空"};
    if (rect_.width > limits_.jpegSide || rect_.height > limits_.jpegSide) {
      return {Problem::TooLarge, "裁切区域超出JPEG图片的最大尺寸"};
    }
    if (Status opened = reader_.Open(path, limits_, rect_.width); !opened) return opened;
    if (!errors_.Guard([this] { writer_.SetUp(Format()); })) return errors_.Result();
    if (control_.admit && !control_.admit(reader_.BytesHeld(rect_.width))) return {Problem::Stopped, "已停止"};
    writer_.AddTags(Tags());
    if (JpegPlanes::Suits(reader_, writer_, rect_)) {
      JpegPlanes planes(reader_, writer_, rect_);
      return Transfer(planes);
    }
    JpegRows rows(errors_, reader_, writer_, rect_, White(), control_.decoded);
    decodes_ = !control_.decoded;
    return Transfer(rows);
  }

 private:
  // mover: JpegPlanes or JpegRows.
  template <class Mover>
  Status Transfer(Mover& mover) {
    if (!errors_.Guard([&] { mover.Start(); })) return errors_.Result();
    mover.Allocate();
    const bool moved = errors_.Guard([&] {
      mover.Move();
      writer_.Finish();
      if (decodes_) reader_.CheckRest();
    });
    return moved ? Status::Ok() : errors_.Result();
  }

  JpegFormat Format() const {
    const jpeg_decompress_struct& source = reader_.Info();
    JpegFormat format;
    format.size = {rect_.width, rect_.height};
    format.components = source.num_components;
    format.given = format.stored = source.jpeg_color_space;
    format.quality = quality_;
    if (source.num_components > 1) {
      format.chroma.across = source.max_h_samp_factor >= 2 * source.comp_info[1].h_samp_factor ? 2 : 1;
      format.chroma.down = source.max_v_samp_factor >= 2 * source.comp_info[1].v_samp_factor ? 2 : 1;
    }
    format.invertedInks = reader_.Head().adobe;
    format.density = Density();
    return format;
  }

  int Dpi() const { return dpi_ > 0 ? dpi_ : reader_.Head().Dpi(); }

  std::optional<JpegDensity> Density() const {
    const JpegHead& head = reader_.Head();
    const bool keeps = dpi_ <= 0 && head.jfif && (head.unit != JpegHead::Unit::None || Dpi() <= 0);
    if (keeps) return JpegDensity{head.unit, head.densityX, head.densityY};
    if (Dpi() > 0) return JpegDensity{JpegHead::Unit::Inch, Dpi(), Dpi()};
    return std::nullopt;
  }

  JpegTags Tags() const {
    const JpegHead& head = reader_.Head();
    return {.exif = head.exif,
            .keep = exif_,
            .exifDpi = dpi_,
            .orientation = ReadExif(head.exif).orientation,
            .dpi = Dpi(),
            .icc = head.icc};
  }

  std::array<JSAMPLE, 4> White() const {
    switch (reader_.Info().jpeg_color_space) {
      case JCS_YCbCr:
        return {255, 128, 128, 0};
      case JCS_YCCK:
        return {0, 128, 128, 255};
      case JCS_CMYK:
        if (!reader_.Head().adobe) return {0, 0, 0, 0};
        [[fallthrough]];
      default:
        return {255, 255, 255, 255};
    }
  }

  const base::Rect rect_;
  const int quality_;
  const int dpi_;
  const Exif exif_;
  const Limits& limits_;
  const JpegCutControl& control_;

  JpegErrors errors_;
  JpegReader reader_;
  JpegWriter writer_;
  bool decodes_ = true;
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
