// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <jpeglib.h>

#include "base/rect.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/jpeg/jpeg_stream.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Pixels that a chroma sample covers in each direction, 1 or 2.
struct JpegChroma {
  int across = 1;
  int down = 1;
};

struct JpegDensity {
  JpegHead::Unit unit = JpegHead::Unit::Inch;
  int x = 1;  // 1..65535; outside: clamped
  int y = 1;
};

// What a JPEG is to be.
struct JpegFormat {
  base::Size size;  // sides 1..65500
  int components = 3;
  J_COLOR_SPACE given = JCS_RGB;     // of the rows written
  J_COLOR_SPACE stored = JCS_YCbCr;  // of the file: as given, or YCbCr for RGB
  int quality = 80;                  // 0..100; outside: clamped
  // Of YCbCr and YCCK from quality 90 on; below, chroma covers 2 x 2 pixels.
  JpegChroma chroma = {};
  // CMYK values count what an ink leaves of the paper's white, and an Adobe marker says so.
  bool invertedInks = true;
  // None: a mere ratio of 1 to 1 if the file has a JFIF header. With it the file gets one, unless it is stored as RGB.
  std::optional<JpegDensity> density = {};
};

// The metadata that goes with a JPEG.
struct JpegTags {
  std::string_view exif = {};  // TIFF structure of the source, "" for none
  Exif keep = Exif::Drop;
  int exifDpi = 0;                         // above 0: put into a kept EXIF block
  int orientation = 1;                     // written also if the EXIF block is dropped or unreadable
  int dpi = 0;                             // goes into EXIF if no JFIF header can carry it; 0: unknown
  std::vector<std::string_view> icc = {};  // whole payloads of the ICC profile segments
};

// Writes one JPEG into a sink. Cuts and encoded pictures all go through this class, so that the same settings give the
// same file.
//
// Call SetUp, AddTags, StartRows or StartPlanes, then write from the top, then Finish. All but AddTags run under the
// Guard of errors and fail by its jump.
class JpegWriter {
 public:
  // errors may be shared with a reader, so that one Guard covers both. Both must live as long as the writer.
  JpegWriter(JpegErrors& errors, const ByteSink& sink) : errors_(errors), target_(errors, sink) {}
  ~JpegWriter() { jpeg_destroy_compress(&encoder_); }
  JpegWriter(const JpegWriter&) = delete;
  JpegWriter& operator=(const JpegWriter&) = delete;

  void SetUp(const JpegFormat& format);
  // Prepares the metadata segments. A kept EXIF block gets the size of the result, and its thumbnail is blanked; if it
  // has no room in its segment, only orientation and dpi are written. The views in tags have to stay valid until the
  // start.
  void AddTags(const JpegTags& tags);

  // Size, sampling and colours, valid from SetUp on.
  const jpeg_compress_struct& Info() const { return encoder_; }

  void StartRows();
  void WriteRows(JSAMPARRAY rows, int count);

  // Components are accepted at the resolution they are stored in.
  void StartPlanes();
  // rows are rows of pixels: one row of minimum coded units.
  void WritePlanes(JSAMPIMAGE planes, int rows);

  void Finish();

 private:
  void SetSampling(const JpegFormat& format);
  void SetDensity(const JpegDensity& density);
  void WriteTags();
  void WriteSegment(int marker, std::string_view payload);

  JpegErrors& errors_;
  JpegTarget target_;
  jpeg_compress_struct encoder_{};
  std::string exif_;  // whole payload of its segment, "" for none
  std::vector<std::string_view> icc_;
};

// Payloads of the segments that hold an ICC profile; none if it is too large for a JPEG.
std::vector<std::string> ProfileSegments(std::string_view profile);

}  // namespace quillon::imaging
